#include "files/TextFile.h"

#include <Carbon/MacErrors.h>

#include "files/FileCache.h"
#include "files/SettingsFailure.h"
#include "files/WholeFile.h"
#include "foundation/Held.h"
#include "foundation/Url.h"

namespace Platform {

namespace {

OSErr Read(Path const& file, SInt64 most, std::shared_ptr<std::string const>& text) {
    Held<__CFURL const> const url(NewURL(file, false));
    OSErr error = noErr;
    Held<__CFData> const data(ReadWholeFile(url.get(), error, most));
    if (!data) return error;
    auto const bytes = data->Bytes();
    text = std::make_shared<std::string const>(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    return noErr;
}

FileCache<std::string>& Texts() {
    static auto& cache = *new FileCache<std::string>(8);
    return cache;
}

}  // namespace

OSErr ReadTextFile(Path const& file, std::shared_ptr<std::string const>& text) {
    return Read(file, kMostOfTextFile, text);
}

OSErr ReadLongTextFile(Path const& file, std::shared_ptr<std::string const>& text) {
    return Read(file, kMostOfWholeFile, text);
}

OSErr GetTextFile(std::string const& path, std::string& text) {
    std::shared_ptr<std::string const> content;
    OSErr const error = GetThrough(Texts(), path, content, ReadTextFile);
    text = content ? *content : std::string();
    return error;
}

OSErr GetSettingsFile(std::string const& path, std::string& text) {
    text.clear();
    SeenItem item;
    OSErr error = SeeItem(path, item);
    if (error == noErr) {
        std::shared_ptr<std::string const> content;
        OSErr unread = noErr;
        error = GetThrough(Texts(), path, content,
                           [&](Path const& file, auto& read) { return unread = ReadTextFile(file, read); });
        if (error == noErr) error = unread;
        if (content) text = *content;
    }
    bool const isMissing = error == fnfErr || error == dirNFErr;  // perhaps behind a link
    if (error == noErr || isMissing) return noErr;
    return WasGivenUp(error) ? error : NoteUnreadableSettings(path, error);
}

}  // namespace Platform
