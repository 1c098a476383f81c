#include "language/Failures.h"

#include <cxxabi.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>
#include <typeinfo>

#include "Evaluator/Exceptions.h"
#include "Platform/Items.h"
#include "files/FolderFailures.h"
#include "registry/Vocabulary.h"

namespace Evaluator {
namespace {

struct Meaning {
    long code;
    std::string_view text;
};

constexpr std::array kMeanings{
    Meaning{-33, "the directory is full"},
    Meaning{-34, "the disk is full"},
    Meaning{-35, "no such volume"},
    Meaning{-36, "input or output error"},
    Meaning{-37, "bad name"},
    Meaning{-38, "the file is not open"},
    Meaning{-39, "end of file"},
    Meaning{-40, "position before the start of the file"},
    Meaning{-42, "too many open files"},
    Meaning{-43, "file not found"},
    Meaning{-44, "the disk is write-protected"},
    Meaning{-45, "the file is locked"},
    Meaning{-46, "the volume is locked"},
    Meaning{-47, "the file is busy"},
    Meaning{-48, "duplicate name"},
    Meaning{-49, "the file is already open for writing"},
    Meaning{-50, "bad parameter"},
    Meaning{-51, "bad reference number"},
    Meaning{-53, "the volume is offline"},
    Meaning{-54, "permission denied"},
    Meaning{-61, "no permission to write"},
    Meaning{-108, "out of memory"},
    Meaning{-109, "empty handle"},
    Meaning{-111, "no handle of a block of memory"},
    Meaning{-120, "directory not found"},
    Meaning{-128, "cancelled"},
    Meaning{-192, "resource not found"},
    Meaning{-193, "resource file not found"},
    Meaning{-199, "the resource map cannot be read"},
    Meaning{-200, "no sound hardware"},
    Meaning{-600, "no such process"},
    Meaning{-606, "the process has no window"},
    Meaning{-666, "no such setting"},
    Meaning{-668, "the stored setting is too short or of the wrong form"},
    Meaning{-670, "the setting is too long"},
    Meaning{-1302, "not a file"},
    Meaning{-1309,
            "it is larger than the limit for files that are read as a whole: 256 MiB, or 4 MiB for files of "
            "settings"},
    Meaning{-1401, "stale file reference"},
    Meaning{-1402, "bad fork name"},
    Meaning{-1405, "bad catalog information request"},
    Meaning{-1407, "not a folder"},
    Meaning{-1409, "no such fork"},
    Meaning{-1410, "the name is too long"},
    Meaning{-1417, "no more items"},
    Meaning{-3000, "no such component"},
    Meaning{-4270, "the table of special folders has mistakes"},
    Meaning{-5000, "access denied"},
    Meaning{-5550, "unknown machine error"},
    Meaning{-5551, "unknown selector"},
    Meaning{-7872, "bad length of a SCSI request"},
};

constexpr std::int32_t volumeOffline = -53, fileTooLarge = -1309, badFolderTable = -4270;
constexpr std::int32_t fileNotFound = -43, directoryNotFound = -120;

// What is wrong with a file of settings, or a server, that the platform could not use last; empty where there
// was none.
std::string MistakesInSettings() {
    char file[PATH_MAX + 1], reason[2000];
    if (!PlatformSettingsFailure(file, sizeof file, reason, sizeof reason)) return {};
    if (file[0] == 0) return Printable(reason);
    return fmt::format("the file \"{}\" cannot be used: {}", Printable(file), Printable(reason));
}

// What the code means, in words; empty where nobody knows.
std::string MeaningOf(long code) {
    if (std::string mistakes = MistakesInSettings(); !mistakes.empty()) return mistakes;
    if (std::string mount = code == volumeOffline ? UnresponsiveMount(volumeOffline) : ""; !mount.empty())
        return mount;
    auto found =
        std::find_if(kMeanings.begin(), kMeanings.end(), [&](auto& row) { return row.code == code; });
    return found == kMeanings.end() ? std::string() : std::string(found->text);
}

std::string PlatformError(long code) {
    std::string meaning = MeaningOf(code);
    return fmt::format("the platform's error {}{}", code,
                       meaning.empty() ? "" : fmt::format(" ({})", meaning));
}

std::string ClassName(std::type_info const& type) {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return status == 0 && name ? name.get() : type.name();
}

// The folder that a failed listing was about; empty where nothing is known of it.
std::string FolderOf(FileIOError const& error) {
    std::string const path = FolderOfFailure(error.Detail());
    return path.empty() ? path : fmt::format("the folder \"{}\"", Printable(path));
}

// The platform's last failure to look up, open or read a file during the call; code 0 where there was none.
// The exceptions have no room for it.
struct FileFailure {
    long code = 0;
    std::string file;
    std::string item;  // the same where it may be a folder
};
FileFailure LastFileFailure() {
    char path[PATH_MAX + 1];
    long const code = PlatformFileFailure(path, sizeof path);
    std::string const name = path[0] != 0 ? fmt::format(" \"{}\"", Printable(path)) : "";
    return {code, "the file" + name, "the item" + name};
}

bool IsForbidden(FileFailure const& failure) {
    constexpr long notPermitted = -54, accessDenied = -5000;
    return failure.code == notPermitted || failure.code == accessDenied;
}

// What may not be read: a folder or a file, as far as that is known.
std::string Forbidden(FilePermissionError const& error) {
    if (std::string folder = FolderOf(error); !folder.empty()) return folder;
    FileFailure failure = LastFileFailure();
    return IsForbidden(failure) ? failure.file : "it";
}

std::string Unreadable(FileFailure const& failure) {
    if (failure.code == 0) return "the file cannot be read";
    return fmt::format("{} cannot be read: {}", failure.file, PlatformError(failure.code));
}

// What the platform last took for a property list, and why it is none; no reason where it is one.
struct ListFailure {
    std::string file;
    std::string reason;
};
ListFailure LastListFailure() {
    char path[PATH_MAX + 1], reason[500];
    PlatformPropertyListFailure(path, sizeof path, reason, sizeof reason);
    return {path[0] != 0 ? fmt::format("the file \"{}\"", Printable(path)) : "the data", Printable(reason)};
}

// In words; empty where it is one.
std::string NoList(ListFailure const& failure) {
    if (failure.reason.empty()) return {};
    return fmt::format("{} is no property list: {}", failure.file, failure.reason);
}

// Why a list has no dictionary; where the platform found nothing wrong it is one of something else.
std::string NoDictionary() {
    constexpr long outOfMemory = -108;
    if (FileFailure const file = LastFileFailure(); file.code == outOfMemory) return Unreadable(file);
    ListFailure const failure = LastListFailure();
    std::string none = NoList(failure);
    return none.empty() ? fmt::format("the property list of {} is no dictionary", failure.file) : none;
}

// Why the exception that is being handled was thrown.
std::string Reason() {
    try {
        throw;
    } catch (FilePermissionError const& error) {
        return Forbidden(error) + " may not be read";
    } catch (FileLockError const&) {
        return "the file is locked";
    } catch (FileBusyError const&) {
        return "the file is busy";
    } catch (DiskFullError const&) {
        return "the disk is full";
    } catch (EndOfFileError const&) {
        return "the file ended too early";
    } catch (FileNotOpenError const&) {
        return "the file is not open";
    } catch (FileIOError const&) {
        return Unreadable(LastFileFailure());
    } catch (ArithmeticOverflow const&) {
        return "the result is out of range";
    } catch (DivisionByZero const&) {
        return "division by zero";
    } catch (DataOverflow const&) {
        return "the result is too long";
    } catch (StringyLengthTooLong const&) {
        return "a text is longer than 4294967295 bytes";
    } catch (ParsingFailure const&) {
        return "the text cannot be read";
    } catch (OSError const& error) {
        FileFailure const failure = LastFileFailure();
        bool const isOfFile = error.Code() == failure.code && MistakesInSettings().empty();
        if (isOfFile && failure.code == fileTooLarge) return Unreadable(failure);
        if (isOfFile && IsForbidden(failure)) return failure.item + " may not be read";
        return PlatformError(error.Code());
    } catch (BadFileNameError const&) {
        return "bad file name";
    } catch (IllegalFileName const&) {
        return "no file can have this name";
    } catch (IllegalFileNameLength const&) {
        return "the file name is longer than 255 bytes";
    } catch (MacintoshPlatform::FailedToGetFileItem const& failure) {
        return PlatformError(failure.Code());
    } catch (MacintoshPlatform::MakeFileLocationFailed const&) {
        return "the path cannot be resolved";
    } catch (DictionaryCreateFromXMLDataFailed const&) {
        return NoDictionary();
    } catch (GenericCFCastError const&) {
        return "a property-list value is not of the type that is needed";
    } catch (UnknownType const& unknown) {
        return unknown.what();
    } catch (std::bad_alloc const&) {
        return PlatformError(-108);
    } catch (DebuggableException const& exception) {
        return fmt::format("{} was thrown", ClassName(typeid(exception)));
    } catch (std::exception const& exception) {
        char const* words = exception.what();
        std::string name = ClassName(typeid(exception));
        return words ? fmt::format("{} was thrown: {}", name, words) : fmt::format("{} was thrown", name);
    } catch (...) {
        std::type_info const* type = abi::__cxa_current_exception_type();
        return fmt::format("{} was thrown", type ? ClassName(*type) : "an unknown exception");
    }
}

std::string NameOf(Entry const& entry) {
    switch (entry.kind) {
        case EntryKind::property:
        case EntryKind::iterated:
            return static_cast<PropertyEntry const&>(entry).singular;
        case EntryKind::cast:
            return "as " + static_cast<CastEntry const&>(entry).phrase;
        case EntryKind::cache:
            return "clearing a cache of " + entry.library->name;
        default:
            return {};
    }
}

Problem Failed(Entry const& entry, Range where, std::string const& reason) {
    std::string name = NameOf(entry);
    return {ProblemKind::evaluation,
            where,
            name.empty() ? reason : fmt::format("\"{}\" failed: {}", name, reason),
            {}};
}

std::string Missing(FileFailure const& failure) {
    bool const isKnown = failure.code == fileNotFound || failure.code == directoryNotFound;
    return (isKnown ? failure.file : "the file") + " is not there";
}

// "May not be read" and "is not there" are different things to whoever asked.
std::string WhyNoItem(std::int32_t status) {
    FileFailure const failure = LastFileFailure();
    std::string const item = status != 0 && failure.code == status ? failure.item : "the item";
    if (status == 0 || status == fileNotFound || status == directoryNotFound) return item + " is not there";
    return fmt::format("{} cannot be looked up: {}", item, PlatformError(status));
}

}  // namespace

std::string UnresponsiveMount(std::int32_t code) {
    char mountPoint[PATH_MAX + 1];
    if (PlatformUnresponsiveMount(mountPoint, sizeof mountPoint) != code) return {};
    return fmt::format("the file system mounted at \"{}\" does not answer", Printable(mountPoint));
}

std::optional<std::string> MissingItem() {
    try {
        throw;
    } catch (FileNotFoundError const&) {
        return Missing(LastFileFailure());
    } catch (DirectoryNotFoundError const& error) {
        std::string const folder = FolderOf(error);
        return (folder.empty() ? "the folder" : folder) + " is not there";
    } catch (MacintoshPlatform::FailedToGetFileItem const& failure) {
        if (failure.Code() == volumeOffline) return std::nullopt;
        return WhyNoItem(failure.Code());
    } catch (...) {
        return std::nullopt;
    }
}

std::string UnusableFile() {
    FileFailure const failure = LastFileFailure();
    if (failure.code == 0 || failure.code == fileNotFound || failure.code == directoryNotFound)
        return NoList(LastListFailure());
    return IsForbidden(failure) ? failure.file + " may not be read" : Unreadable(failure);
}

std::optional<Problem> SilenceBehind(Entry const& entry, Range where) {
    if (!MistakesInSettings().empty()) return Failed(entry, where, PlatformError(badFolderTable));
    if (!PlatformHasUnnotedMount() || UnresponsiveMount(volumeOffline).empty()) return std::nullopt;
    return Failed(entry, where, PlatformError(volumeOffline));
}

Problem FailureOf(Entry const& entry, Range where) { return Failed(entry, where, Reason()); }

}  // namespace Evaluator
