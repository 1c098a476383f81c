#include "internet/Fonts.h"

#include <Carbon/MacErrors.h>
#include <dlfcn.h>
#include <fontconfig/fontconfig.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "files/SlowPaths.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

// What is used of the library. The functions that list or match the fonts of a configuration write caches
// where there are none, so the fonts are collected here, and only the choice among them is the library's.
struct Library {
    decltype(FcInitLoadConfig)* initLoadConfig;
    decltype(FcConfigDestroy)* configDestroy;
    decltype(FcConfigGetFontDirs)* configGetFontDirs;
    decltype(FcStrListNext)* strListNext;
    decltype(FcStrListDone)* strListDone;
    decltype(FcDirCacheLoad)* dirCacheLoad;
    decltype(FcDirCacheUnload)* dirCacheUnload;
    decltype(FcCacheCopySet)* cacheCopySet;
    decltype(FcCacheNumSubdir)* cacheNumSubdir;
    decltype(FcCacheSubdir)* cacheSubdir;
    decltype(FcFreeTypeQueryAll)* freeTypeQueryAll;
    decltype(FcFontSetCreate)* fontSetCreate;
    decltype(FcFontSetDestroy)* fontSetDestroy;
    decltype(FcFontSetMatch)* fontSetMatch;
    decltype(FcPatternCreate)* patternCreate;
    decltype(FcPatternDestroy)* patternDestroy;
    decltype(FcPatternAddString)* patternAddString;
    decltype(FcPatternAddInteger)* patternAddInteger;
    decltype(FcPatternAddDouble)* patternAddDouble;
    decltype(FcPatternGetString)* patternGetString;
    decltype(FcPatternGetInteger)* patternGetInteger;
    decltype(FcPatternGetDouble)* patternGetDouble;
    decltype(FcConfigSubstitute)* configSubstitute;
};

template <class Function>
bool Find(void* library, char const* name, Function*& function) {
    function = reinterpret_cast<Function*>(dlsym(library, name));
    return function != nullptr;
}

// Null where there is no such library. One that was opened stays open.
Library const* OpenLibrary() {
    void* const handle = dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) return nullptr;
    static Library library;
    bool const hasAll = Find(handle, "FcInitLoadConfig", library.initLoadConfig) &&
                        Find(handle, "FcConfigDestroy", library.configDestroy) &&
                        Find(handle, "FcConfigGetFontDirs", library.configGetFontDirs) &&
                        Find(handle, "FcStrListNext", library.strListNext) &&
                        Find(handle, "FcStrListDone", library.strListDone) &&
                        Find(handle, "FcDirCacheLoad", library.dirCacheLoad) &&
                        Find(handle, "FcDirCacheUnload", library.dirCacheUnload) &&
                        Find(handle, "FcCacheCopySet", library.cacheCopySet) &&
                        Find(handle, "FcCacheNumSubdir", library.cacheNumSubdir) &&
                        Find(handle, "FcCacheSubdir", library.cacheSubdir) &&
                        Find(handle, "FcFreeTypeQueryAll", library.freeTypeQueryAll) &&
                        Find(handle, "FcFontSetCreate", library.fontSetCreate) &&
                        Find(handle, "FcFontSetDestroy", library.fontSetDestroy) &&
                        Find(handle, "FcFontSetMatch", library.fontSetMatch) &&
                        Find(handle, "FcPatternCreate", library.patternCreate) &&
                        Find(handle, "FcPatternDestroy", library.patternDestroy) &&
                        Find(handle, "FcPatternAddString", library.patternAddString) &&
                        Find(handle, "FcPatternAddInteger", library.patternAddInteger) &&
                        Find(handle, "FcPatternAddDouble", library.patternAddDouble) &&
                        Find(handle, "FcPatternGetString", library.patternGetString) &&
                        Find(handle, "FcPatternGetInteger", library.patternGetInteger) &&
                        Find(handle, "FcPatternGetDouble", library.patternGetDouble) &&
                        Find(handle, "FcConfigSubstitute", library.configSubstitute);
    return hasAll ? &library : nullptr;
}

// The fonts of a configuration, and the choice among them.
class Fonts {
  public:
    explicit Fonts(Library const& opened)
        : library(opened), config(opened.initLoadConfig(), opened.configDestroy) {
        if (!config) return;
        FcStrList* const folders = library.configGetFontDirs(config.get());
        if (folders == nullptr) return;
        while (FcChar8 const* const folder = library.strListNext(folders))
            Collect(reinterpret_cast<char const*>(folder));
        library.strListDone(folders);
    }
    Fonts(Fonts const&) = delete;
    Fonts& operator=(Fonts const&) = delete;
    ~Fonts() {
        for (FcFontSet* const set : sets) library.fontSetDestroy(set);
    }

    // False when there is none.
    bool Choose(std::string const& family, ChosenFont& font) {
        if (!config || sets.empty()) return false;
        Pattern const wanted(library.patternCreate(), library.patternDestroy);
        library.patternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<FcChar8 const*>(family.c_str()));
        library.configSubstitute(config.get(), wanted.get(), FcMatchPattern);
        AddDefaults(wanted.get());
        FcResult result;
        Pattern const chosen(library.fontSetMatch(config.get(), sets.data(), static_cast<int>(sets.size()),
                                                  wanted.get(), &result),
                             library.patternDestroy);
        return chosen && Describe(*chosen, font);
    }

  private:
    using Pattern = std::unique_ptr<FcPattern, decltype(FcPatternDestroy)*>;

    Library const& library;
    std::unique_ptr<FcConfig, decltype(FcConfigDestroy)*> const config;
    std::vector<FcFontSet*> sets;
    std::set<std::pair<dev_t, ino_t>> seen;  // folders

    // Adds the fonts of a folder and of those in it.
    void Collect(std::string const& folder) {
        struct stat status;
        if (stat(folder.c_str(), &status) != 0 || !seen.insert({status.st_dev, status.st_ino}).second) return;
        FcCache* const cache =
            library.dirCacheLoad(reinterpret_cast<FcChar8 const*>(folder.c_str()), config.get(), nullptr);
        if (cache == nullptr) return Scan(folder);
        if (FcFontSet* const set = library.cacheCopySet(cache)) sets.push_back(set);
        std::vector<std::string> folders;
        for (int i = 0; i < library.cacheNumSubdir(cache); ++i)
            folders.emplace_back(reinterpret_cast<char const*>(library.cacheSubdir(cache, i)));
        library.dirCacheUnload(cache);
        for (std::string const& inner : folders) Collect(inner);
    }

    // The same for a folder that no cache knows.
    void Scan(std::string const& folder) {
        sets.push_back(library.fontSetCreate());
        FcFontSet* const set = sets.back();
        std::error_code error;
        std::filesystem::directory_iterator entry(folder, error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            std::string const path = entry->path().string();
            std::error_code ignored;
            int count;
            if (entry->path().filename().string().starts_with('.')) continue;
            if (entry->is_directory(ignored)) {
                Collect(path);
            } else if (entry->is_regular_file(ignored)) {
                library.freeTypeQueryAll(reinterpret_cast<FcChar8 const*>(path.c_str()),
                                         static_cast<unsigned>(-1), nullptr, &count, set);
            }
        }
    }

    int Number(FcPattern const& pattern, char const* property, int otherwise) const {
        int number;
        return library.patternGetInteger(&pattern, property, 0, &number) == FcResultMatch ? number
                                                                                          : otherwise;
    }

    // What is wanted of a font where the configuration does not say: an ordinary one, as the library would
    // add it itself, which may write a cache.
    void AddDefaults(FcPattern* pattern) const {
        constexpr int none = -1;
        constexpr double usualSize = 12;
        double size;
        if (Number(*pattern, FC_WEIGHT, none) == none)
            library.patternAddInteger(pattern, FC_WEIGHT, FC_WEIGHT_NORMAL);
        if (Number(*pattern, FC_SLANT, none) == none)
            library.patternAddInteger(pattern, FC_SLANT, FC_SLANT_ROMAN);
        if (Number(*pattern, FC_WIDTH, none) == none)
            library.patternAddInteger(pattern, FC_WIDTH, FC_WIDTH_NORMAL);
        if (library.patternGetDouble(pattern, FC_SIZE, 0, &size) != FcResultMatch)
            library.patternAddDouble(pattern, FC_SIZE, usualSize);
    }

    bool Describe(FcPattern const& chosen, ChosenFont& font) const {
        FcChar8* name;
        double size;
        if (library.patternGetString(&chosen, FC_FAMILY, 0, &name) != FcResultMatch) return false;
        if (library.patternGetDouble(&chosen, FC_SIZE, 0, &size) != FcResultMatch) size = 0;
        constexpr double most = 32767;
        constexpr UInt8 bold = 1, italic = 2;
        font.name = reinterpret_cast<char const*>(name);
        font.size = size > 0 && size <= most ? static_cast<SInt16>(size + 0.5) : SInt16{0};
        font.face = Number(chosen, FC_WEIGHT, FC_WEIGHT_NORMAL) >= FC_WEIGHT_DEMIBOLD ? bold : 0;
        if (Number(chosen, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN) font.face |= italic;
        return true;
    }
};

}  // namespace

OSErr GetFont(char const* family, ChosenFont& font) {
    static Library const* const library = OpenLibrary();
    if (library == nullptr) return icPrefNotFoundErr;
    std::string const home = HomeFolder();
    auto const mount = home.empty() ? std::nullopt : SlowMountBehind(home, LinkRule::Follow);
    return Reach(mount, font, [name = std::string(family)](ChosenFont& chosen) -> OSErr {
        return Fonts(*library).Choose(name, chosen) ? noErr : icPrefNotFoundErr;
    });
}

}  // namespace Platform
