#include "registry/Libraries.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace Evaluator {
namespace {

// A library runs with the user's rights, so nobody but the user and root may have had a say in what it holds.
std::optional<std::string> WhyNotTrusted(std::string const& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return std::string(std::strerror(errno));
    if (!S_ISREG(status.st_mode)) return "it is not a file";
    if (status.st_uid != geteuid() && status.st_uid != 0)
        return fmt::format("it is not trusted: its owner is neither you nor root (user id {})",
                           status.st_uid);
    if (status.st_mode & (S_IWGRP | S_IWOTH))
        return fmt::format("it is not trusted: others may write it (mode {:04o})", status.st_mode & 07777);
    return std::nullopt;
}

// The name that a library shares with every other way to its file.
std::string ResolvedPath(std::filesystem::path const& file) {
    std::error_code error;
    std::filesystem::path resolved = std::filesystem::canonical(file, error);
    return error ? file.string() : resolved.string();
}

// The executable segments of a library that was loaded.
std::vector<ConstData> CodeOf(void* handle) {
    struct Search {
        link_map const* wanted = nullptr;
        std::vector<ConstData> found;
    } search;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &search.wanted) != 0) return {};
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* data) {
            auto& search = *static_cast<Search*>(data);
            if (info->dlpi_addr != search.wanted->l_addr) return 0;
            std::uintptr_t const page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
            for (int i = 0; i < info->dlpi_phnum; ++i) {
                auto const& segment = info->dlpi_phdr[i];
                if (segment.p_type != PT_LOAD || !(segment.p_flags & PF_X)) continue;
                std::uintptr_t begin = (info->dlpi_addr + segment.p_vaddr) / page * page;
                std::uintptr_t end = info->dlpi_addr + segment.p_vaddr + segment.p_memsz;
                search.found.emplace_back(reinterpret_cast<unsigned char const*>(begin),
                                          (end - begin + page - 1) / page * page);
            }
            return 1;
        },
        &search);
    return std::move(search.found);
}

}  // namespace

Libraries& Libraries::Instance() {
    static Libraries& libraries = *new Libraries;  // never destroyed: entries point into it
    return libraries;
}

std::vector<std::string> Libraries::Load(std::filesystem::path const& file) {
    auto refused = [&](std::string const& why) {
        return std::vector{fmt::format("cannot load \"{}\": {}", file.string(), why)};
    };
    std::string path = ResolvedPath(file);
    if (auto why = WhyNotTrusted(path)) return refused(*why);
    std::string name = std::filesystem::path(path).filename().string();
    for (Library const& library : loaded) {
        if (library.path == path) return refused("it is loaded already");
        if (library.name == name) return refused("a library of this name is loaded already");
    }

    Registry& registry = Registry::Instance();
    if (registry.Registering()) return refused("another library is being loaded");

    loaded.push_back({name, path, nullptr, 0});
    Library& library = loaded.back();
    std::vector<std::string> problems;
    {
        Registry::Turn turn(registry, library);
        library.handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        problems = registry.TakeProblems();
    }
    if (!library.handle)
        problems = refused(dlerror());
    else if (!problems.empty())
        problems.insert(problems.begin(), refused("it breaks the contract of inspector libraries").front());
    else if (!registry.Holds(library))  // also where the file is loaded already, by another name
        problems = refused("it registers nothing");
    if (problems.empty()) {
        library.code = CodeOf(library.handle);
        return {};
    }
    if (library.handle) dlclose(library.handle);  // withdraws what it could register
    registry.Forget(library);
    loaded.pop_back();
    return problems;
}

bool Libraries::HoldCode(void const* address) const {
    auto* byte = static_cast<unsigned char const*>(address);
    for (Library const& library : loaded)
        for (ConstData segment : library.code)
            if (byte >= segment.begin() && byte < segment.end()) return true;
    return false;
}

void Libraries::SetExecutable(bool executable) const {
    for (Library const& library : loaded)
        for (ConstData segment : library.code)
            mprotect(const_cast<unsigned char*>(segment.begin()), segment.Size(),
                     executable ? PROT_READ | PROT_EXEC : PROT_READ);
}

std::optional<std::string> Libraries::Unload(std::string_view name) {
    auto library =
        std::find_if(loaded.begin(), loaded.end(), [&](Library const& one) { return one.name == name; });
    if (library == loaded.end()) return fmt::format("cannot unload \"{}\": it is not loaded", name);
    if (library->uses > 0)
        return fmt::format("cannot unload \"{}\": a compiled query, a kept value or an evaluation uses it",
                           name);
    dlclose(library->handle);
    Registry::Instance().Forget(*library);
    loaded.erase(library);
    return std::nullopt;
}

}  // namespace Evaluator
