// Any bytes as an administrator's table of special folders, on top of a small one.

#include "folders/FolderRules.h"

#include "Invariants.h"

using namespace Platform;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    constexpr OSType fonts = 0x666F6E74, enabled = 0x73747274, disabled = 0x73747244;
    std::string_view const text = Fuzz::AsQuery(data, size);
    FolderRules rules;
    std::vector<std::string> mistakes;
    rules.Read("[font]\nsystem = $A/b\n[strt]\nevery = ~/c\n[strD]\npair = strt\n", true, mistakes);
    Fuzz::Hold(mistakes.empty(), "a sound table has no mistakes");
    rules.Read(text, false, mistakes);
    for (std::string const& mistake : mistakes)
        Fuzz::Hold(mistake.starts_with("line "), "a mistake tells its line");
    for (OSType const type : {fonts, enabled, disabled}) {
        Fuzz::Hold(static_cast<std::size_t>(rules.UsualDomainOf(type)) < kDomains, "a usual domain is one");
        for (std::size_t domain = 0; domain < kDomains; ++domain) {
            auto const paths = rules.PathsOf(type, static_cast<Domain>(domain), [](std::string_view name) {
                return std::string(name == "A" ? "/a" : name == "HOME" ? "/home" : "");
            });
            for (std::string const& path : paths) {
                Fuzz::Hold(path.starts_with('/'), "a path is absolute");
                Fuzz::Hold(path.find('\0') == path.npos, "a path has no NUL");
            }
        }
    }
    return 0;
}
