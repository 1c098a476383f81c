#include "foundation/Path.h"

#include <cstring>
#include <new>

#include "foundation/PathStyles.h"
#include "foundation/Threads.h"

namespace Platform {

// The name, or the text of a path by itself, stands directly behind the node.
struct Path::Node {
    OwnerCount count;
    Node* folder;  // null for a path by itself; owned
    std::size_t nameLength;
    std::size_t length;  // of the whole path
    bool plain;

    char* NameBytes() { return reinterpret_cast<char*>(this + 1); }
    std::string_view Name() { return {NameBytes(), nameLength}; }
    bool EndsWithSeparator() { return nameLength != 0 && Name().back() == '/'; }
};

namespace {

bool IsOrdinaryName(std::string_view name) {
    return !name.empty() && !IsDots(name) && name.find('/') == std::string_view::npos;
}

bool IsPlainText(std::string_view path) {
    if (path.empty() || path.front() != '/') return false;
    if (path == "/") return true;
    while (!path.empty()) {
        path.remove_prefix(1);
        std::string_view const name = path.substr(0, path.find('/'));
        if (!IsOrdinaryName(name)) return false;
        path.remove_prefix(name.size());
    }
    return true;
}

}  // namespace

// Takes over the folder.
Path::Node* Path::NewNode(Node* folder, std::string_view name) {
    void* memory = ::operator new(sizeof(Node) + name.size());
    Node* const node = new (memory) Node{};
    node->folder = folder;
    node->nameLength = name.size();
    std::memcpy(node->NameBytes(), name.data(), name.size());
    return node;
}

void Path::Retain(Node* node) noexcept {
    if (node != nullptr) node->count.Increase();
}

// Not recursive, since a path may have any number of names.
void Path::Release(Node* node) noexcept {
    while (node != nullptr && node->count.Decrease()) {
        Node* const folder = node->folder;
        node->~Node();
        ::operator delete(node);
        node = folder;
    }
}

Path::Path(std::string_view text) : node(NewNode(nullptr, WithoutEndSeparators(text))) {
    node->length = node->nameLength;
    node->plain = IsPlainText(node->Name());
}

Path Path::Child(std::string_view name) const {
    Node* const child = NewNode(node, name);
    Retain(node);
    child->length = node->length + (node->EndsWithSeparator() ? 0 : 1) + name.size();
    child->plain = node->plain;
    return Path(child);
}

Path Path::Below(std::string_view rest) const {
    return IsOrdinaryName(rest) ? Child(rest) : Path(JoinPaths(Text(), rest));
}

Path Path::Folder() const {
    if (node->folder != nullptr) {
        Retain(node->folder);
        return Path(node->folder);
    }
    if (IsRoot()) return {};
    std::size_t const end = node->Name().rfind('/');
    return Path(node->Name().substr(0, end == 0 ? 1 : end));
}

Path Path::FolderWithin(std::size_t bytes) const {
    Node* folder = node->folder;
    while (folder != nullptr && folder->length > bytes) folder = folder->folder;
    Retain(folder);
    return Path(folder);
}

std::string Path::TextBelow(Path const& folder) const {
    std::string text = Text();
    std::size_t const begin = folder.node->length + (folder.node->EndsWithSeparator() ? 0 : 1);
    return text.erase(0, begin);
}

std::string_view Path::Name() const {
    return node->folder != nullptr ? node->Name() : LastComponent(node->Name());
}

std::string Path::Text() const {
    std::string text(node->length, '/');
    std::size_t end = text.size();
    for (Node* part = node; part != nullptr; part = part->folder) {
        end -= part->nameLength;
        std::memcpy(text.data() + end, part->NameBytes(), part->nameLength);
        if (part->folder != nullptr && !part->folder->EndsWithSeparator()) --end;
    }
    return text;
}

std::size_t Path::Length() const { return node->length; }
bool Path::IsPlain() const { return node->plain; }
bool Path::IsRoot() const { return node->folder == nullptr && node->Name() == "/"; }
bool Path::IsChildOf(Path const& folder) const {
    return node != nullptr && node->folder != nullptr && node->folder == folder.node;
}

}  // namespace Platform
