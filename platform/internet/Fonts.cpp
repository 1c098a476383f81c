#include "internet/Fonts.h"

#include <Carbon/MacErrors.h>
#include <dlfcn.h>
#include <fontconfig/fontconfig.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "files/CheckIn.h"
#include "files/SlowPaths.h"
#include "foundation/PathStyles.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

// What is used of the library. The functions that list or match the fonts of a configuration write caches
// where there are none, so the fonts are collected here, and only the choice among them is the library's.
struct Library {
    decltype(FcInitLoadConfig)* initLoadConfig;
    decltype(FcConfigDestroy)* configDestroy;
    decltype(FcConfigGetFontDirs)* configGetFontDirs;
    decltype(FcConfigGetCacheDirs)* configGetCacheDirs;
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
                        Find(handle, "FcConfigGetCacheDirs", library.configGetCacheDirs) &&
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

// ---- The configuration

using Configuration = std::shared_ptr<FcConfig>;

// The files that the library may begin with, as it looks for them.
std::vector<std::string> FilesOfConfiguration() {
    std::string name = Variable("FONTCONFIG_FILE");
    if (name.starts_with('~')) name = HomeFolder() + name.substr(1);
    if (name.starts_with('/')) return {name};
    if (name.empty()) name = "fonts.conf";
    std::vector<std::string> files;
    for (std::string const& folder : FoldersIn(Variable("FONTCONFIG_PATH")))
        files.push_back(JoinPaths(folder, name));
    files.push_back(JoinPaths("/etc/fonts", name));
    return files;
}

// The first mount whose server may not answer on the way to one of the places.
std::optional<SlowMount> SlowMountBehindAny(std::vector<std::string> const& paths) {
    for (std::string const& path : paths) {
        if (auto mount = SlowMountBehind(path, LinkRule::Follow)) return mount;
    }
    return std::nullopt;
}

// Where there is no file to begin with, the library is not asked: it would complain on standard error. The
// files may be, or include some, in the home. They may also be pipes, which the library opens as any other:
// so it is always waited for as for a mount that may not answer, and there is one such wait at a time.
OSErr Load(Library const& library, Configuration& config) {
    std::vector<std::string> const files = FilesOfConfiguration();
    std::vector<std::string> places = files;
    if (std::string const home = HomeFolder(); !home.empty()) places.push_back(home);
    constexpr std::uint64_t noMount = ~std::uint64_t{0};
    SlowMount const mount = SlowMountBehindAny(places).value_or(SlowMount{noMount, files.front()});
    return Reach(mount, config, [files, &library](Configuration& loaded) -> OSErr {
        bool const isThere = std::ranges::any_of(
            files, [](std::string const& file) { return access(file.c_str(), R_OK) == 0; });
        FcConfig* const made = isThere ? library.initLoadConfig() : nullptr;
        if (made == nullptr) return icPrefNotFoundErr;
        loaded.reset(made, library.configDestroy);
        return noErr;
    });
}

// ---- The fonts

// The fonts of a configuration, and the choice among them. Folders and files that lead onto mounts whose
// servers may not answer are passed over.
class Fonts {
  public:
    Fonts(Library const& opened, Configuration configuration)
        : library(opened),
          config(std::move(configuration)),
          mountOfCaches(SlowMountBehindAny(Listed(opened.configGetCacheDirs(config.get())))) {}
    Fonts(Fonts const&) = delete;
    Fonts& operator=(Fonts const&) = delete;
    ~Fonts() {
        for (FcFontSet* const set : sets) library.fontSetDestroy(set);
    }

    OSErr Collect() {
        for (std::string const& folder : Listed(library.configGetFontDirs(config.get()))) {
            if (OSErr const error = Collect(folder); error != noErr) return error;
        }
        return noErr;
    }

    // False when there is none.
    bool Choose(std::string const& family, ChosenFont& font) {
        if (sets.empty()) return false;
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
    Configuration const config;
    std::optional<SlowMount> const mountOfCaches;
    std::vector<FcFontSet*> sets;
    std::set<std::pair<dev_t, ino_t>> seen;  // folders

    // Ends the list.
    std::vector<std::string> Listed(FcStrList* list) const {
        std::vector<std::string> paths;
        if (list == nullptr) return paths;
        while (FcChar8 const* const path = library.strListNext(list))
            paths.emplace_back(reinterpret_cast<char const*>(path));
        library.strListDone(list);
        return paths;
    }

    // Adds the fonts of a folder and of those in it.
    OSErr Collect(std::string const& folder) {
        if (!MayGoOn(0)) return userCanceledErr;
        if (SlowMountBehind(folder, LinkRule::Follow)) return noErr;
        struct stat status;
        if (stat(folder.c_str(), &status) != 0 || !seen.insert({status.st_dev, status.st_ino}).second)
            return noErr;
        FcCache* cache = nullptr;
        OSErr error = LoadCache(folder, cache);
        if (error != noErr) return error;
        if (cache == nullptr) return Scan(folder);
        if (FcFontSet* const set = library.cacheCopySet(cache)) sets.push_back(set);
        std::vector<std::string> folders;
        for (int i = 0; i < library.cacheNumSubdir(cache); ++i)
            folders.emplace_back(reinterpret_cast<char const*>(library.cacheSubdir(cache, i)));
        library.dirCacheUnload(cache);
        for (std::string const& inner : folders) {
            if (error == noErr) error = Collect(inner);
        }
        return error;
    }

    // Null where no cache knows the folder.
    OSErr LoadCache(std::string const& folder, FcCache*& cache) const {
        return Reach(mountOfCaches, cache, [folder, own = config, &lib = library](FcCache*& loaded) -> OSErr {
            loaded = lib.dirCacheLoad(reinterpret_cast<FcChar8 const*>(folder.c_str()), own.get(), nullptr);
            return noErr;
        });
    }

    // The same for a folder that no cache knows.
    OSErr Scan(std::string const& folder) {
        sets.push_back(library.fontSetCreate());
        FcFontSet* const set = sets.back();
        std::error_code error;
        std::filesystem::directory_iterator entry(folder, error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            std::string const path = entry->path().string();
            std::error_code ignored;
            int count;
            if (!MayGoOn(0)) return userCanceledErr;
            if (entry->path().filename().string().starts_with('.')) continue;
            if (SlowMountBehind(path, LinkRule::Follow)) continue;
            if (entry->is_directory(ignored)) {
                if (OSErr const failed = Collect(path); failed != noErr) return failed;
            } else if (entry->is_regular_file(ignored)) {
                library.freeTypeQueryAll(reinterpret_cast<FcChar8 const*>(path.c_str()),
                                         static_cast<unsigned>(-1), nullptr, &count, set);
            }
        }
        return noErr;
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
    Configuration config;
    OSErr error = Load(*library, config);
    if (error != noErr) return error;
    Fonts fonts(*library, std::move(config));
    error = fonts.Collect();
    if (error != noErr) return error;
    return fonts.Choose(family, font) ? noErr : icPrefNotFoundErr;
}

}  // namespace Platform
