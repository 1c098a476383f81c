#pragma once

// Paths that share their beginnings, and with them the memory: the items of a folder hold its path together,
// so that a tree of any depth costs each item its own name only.

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace Platform {

/// A POSIX path: a text, or another path and a name below it. Immutable; copies share it, on any thread. No
/// separators at its end.
class Path {
  public:
    /// No path at all; nothing may be asked of it.
    Path() noexcept = default;
    /// The path of a text that is not empty. Separators at its end do not count.
    explicit Path(std::string_view text);
    Path(Path const& other) noexcept : node(other.node) { Retain(node); }
    Path(Path&& other) noexcept : node(std::exchange(other.node, nullptr)) {}
    Path& operator=(Path other) noexcept {
        std::swap(node, other.node);
        return *this;
    }
    ~Path() { Release(node); }

    /// The path of a name in the folder at this one. Requires: neither empty nor dots, no separator in it.
    Path Child(std::string_view name) const;
    /// The path of whatever text below the folder at this one.
    Path Below(std::string_view rest) const;
    /// The path of the folder that holds a plain path's item; none of the root.
    Path Folder() const;
    /// The nearest folder above of at most so many bytes that this path was made from; none when it was not
    /// made from one.
    Path FolderWithin(std::size_t bytes) const;
    /// The text from below a folder that this path was made from.
    std::string TextBelow(Path const& folder) const;
    /// The last name; "/" of the root.
    std::string_view Name() const;
    std::string Text() const;
    /// Bytes of the text.
    std::size_t Length() const;
    /// Whether it is absolute and has no ".", "..", doubled separators.
    bool IsPlain() const;
    bool IsRoot() const;

    bool IsNone() const { return node == nullptr; }
    /// Whether it is one with the other, not only of the same text.
    bool Is(Path const& other) const { return node == other.node; }
    /// Whether it was made as a child of `folder`, or of a copy of it.
    bool IsChildOf(Path const& folder) const;

  private:
    struct Node;
    explicit Path(Node* own) noexcept : node(own) {}
    static Node* NewNode(Node* folder, std::string_view name);
    static void Retain(Node* node) noexcept;
    static void Release(Node* node) noexcept;

    Node* node = nullptr;
};

}  // namespace Platform
