#pragma once

// The exceptions that cross from an inspector library into the host. Inspectors report failure only by
// throwing one of these, and adapters catch nothing. The classes are shared by name: the hierarchy is part of
// the contract.

#include <cstdint>
#include <exception>

#include "Evaluator/Export.h"

namespace MacintoshPlatform {
/// What a debugger wants to know of a failure: the code address that made the exception.
class EVALUATOR_API ExceptionDebuggingInfo {
  public:
    explicit ExceptionDebuggingInfo(void const* codeAddress) noexcept : origin(codeAddress) {}
    /// An address in the code that constructed the exception; dladdr(3) names its function. In a build
    /// without optimisation that is the constructor of the exception's own class.
    void const* Origin() const noexcept { return origin; }

  private:
    void const* origin;
};
}  // namespace MacintoshPlatform

/// Root of the evaluator's own failures.
class EVALUATOR_API DebuggableException : public std::exception,
                                          public MacintoshPlatform::ExceptionDebuggingInfo {
  public:
    DebuggableException() noexcept;
    DebuggableException(DebuggableException const&) noexcept;
    DebuggableException& operator=(DebuggableException const&) noexcept;
    ~DebuggableException() override;
    /// The name of the exception's own class, such as "NoSuchObject"; of a class in a namespace the
    /// compiler's mangled name. Lives as long as the library that defines the class.
    char const* what() const noexcept override;
};

/// The object asked for does not exist; also the end of every iteration.
class EVALUATOR_API NoSuchObject : public DebuggableException {};

/// Text that was being parsed is not of the grammar.
class EVALUATOR_API ParsingFailure : public DebuggableException {};
/// A span of bytes, or a number's range, is too small for what it should hold.
class EVALUATOR_API DataOverflow : public DebuggableException {};
/// A sum, difference, product or quotient that 64 bits cannot hold, or a date that its fields cannot.
class EVALUATOR_API ArithmeticOverflow : public DebuggableException {};
/// A quotient or a remainder by zero.
class EVALUATOR_API DivisionByZero : public DebuggableException {};
/// A text is longer than the 32-bit length of a string can tell.
class EVALUATOR_API StringyLengthTooLong : public DebuggableException {};

/// A failure of the platform; holds its error code, unchanged.
class EVALUATOR_API OSError {
  public:
    explicit OSError(long code) noexcept : code(static_cast<std::int32_t>(code)) {}
    OSError(OSError const&) noexcept = default;
    OSError& operator=(OSError const&) noexcept = default;
    virtual ~OSError();
    std::int32_t Code() const noexcept { return code; }

  private:
    std::int32_t code;
};

class EVALUATOR_API MemoryError : public OSError {
  public:
    using OSError::OSError;
};
/// Out of memory; carries the code -108.
class EVALUATOR_API MemoryFullError : public MemoryError {
  public:
    MemoryFullError() noexcept : MemoryError(-108) {}
};
class EVALUATOR_API FileError : public OSError {
  public:
    using OSError::OSError;
};
/// An item that should have been a file is none; carries the code -1302.
class EVALUATOR_API NotAFileError : public FileError {
  public:
    NotAFileError() noexcept : FileError(-1302) {}
};
class EVALUATOR_API ProcessError : public OSError {
  public:
    using OSError::OSError;
};

/// Root of the failures of reading files. Carries a 32-bit detail word, zero where there is nothing to add; a
/// folder that cannot be listed has a number that the host knows it by.
class EVALUATOR_API FileIOError : public DebuggableException {
  public:
    explicit FileIOError(std::int32_t detailWord = 0) noexcept : detail(detailWord) {}
    std::int32_t Detail() const noexcept { return detail; }

  private:
    std::int32_t detail;
};
class EVALUATOR_API FileNotFoundError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};
class EVALUATOR_API DirectoryNotFoundError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};
class EVALUATOR_API FileNotOpenError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};
class EVALUATOR_API DiskFullError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};
class EVALUATOR_API FileLockError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};
class EVALUATOR_API FilePermissionError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};
class EVALUATOR_API FileBusyError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};
class EVALUATOR_API EndOfFileError : public FileIOError {
  public:
    using FileIOError::FileIOError;
};

/// A name that no file can have. Has no base class.
class EVALUATOR_API BadFileNameError {
  public:
    BadFileNameError();
    ~BadFileNameError();
};

// Failures of the platform's services, thrown by the host's file layer and by inspector libraries alike. They
// have no base class; those of the file layer are caught by name where a look-up turns them into
// NoSuchObject.

/// A name that cannot be a file's: empty, ".", "..", or with a '/' or NUL byte.
class EVALUATOR_API IllegalFileName {};
/// A name of more than 255 bytes.
class EVALUATOR_API IllegalFileNameLength {};
class EVALUATOR_API CFURLCopyLastPathComponentFailed {};
class EVALUATOR_API CFURLCreateWithFileSystemPathFailed {};
class EVALUATOR_API CFURLCreateCopyDeletingLastPathComponentFailed {};

namespace MacintoshPlatform {
/// A path that cannot be resolved, for whatever reason.
class EVALUATOR_API MakeFileLocationFailed {};
/// An item whose catalog information could not be obtained, for instance because it does not exist.
class EVALUATOR_API FailedToGetFileItem {
  public:
    /// `platformCode` tells why, as the platform said it; 0 where it has no code for it.
    explicit FailedToGetFileItem(long platformCode = 0) noexcept
        : code(static_cast<std::int32_t>(platformCode)) {}
    std::int32_t Code() const noexcept { return code; }

  private:
    std::int32_t code;
};
/// A special folder that the platform does not know or cannot make.
class EVALUATOR_API CannotCreateSpecialFolder {};
}  // namespace MacintoshPlatform

// Failures of inspectors. They have no base class either; most are caught where an inspector turns them into
// another answer.

/// A bundle has no information dictionary.
class EVALUATOR_API CFBundleGetInfoDictionaryFailed {};
/// A bundle has no information dictionary of the user's language.
class EVALUATOR_API CFBundleGetLocalInfoDictionaryFailed {};
/// A dictionary has no entry of that key.
class EVALUATOR_API CFDictionaryGetValueIfPresentFailed {};
/// Data that is no XML of a property list, or of one whose root is not a dictionary.
class EVALUATOR_API DictionaryCreateFromXMLDataFailed {};
/// A property-list value is not of the type that was wanted, whichever that was.
class EVALUATOR_API GenericCFCastError {};
/// A property-list value is not of this type of reference.
template <class Reference>
class EVALUATOR_API CFCastError : public GenericCFCastError {};
/// A line of text does not hold the key that was looked for.
class EVALUATOR_API KeyNotFoundInLine {};
/// The end of the file was reached before that of the range that was to be read.
class EVALUATOR_API FileReadingLoopEndOfFileError {};
/// A number of a version is larger than its field.
class EVALUATOR_API VersionDataOutOfBounds {};

/// Throws the host's exception for a platform error code: MemoryFullError for -108, NotAFileError for -1302,
/// OSError with the code for any other. Never returns.
[[noreturn]] EVALUATOR_API void ThrowRealOSError(long code);
