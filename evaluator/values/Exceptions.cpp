#include "Evaluator/Exceptions.h"

#include <typeinfo>

DebuggableException::DebuggableException() noexcept : ExceptionDebuggingInfo(__builtin_return_address(0)) {}
DebuggableException::DebuggableException(DebuggableException const&) noexcept = default;
DebuggableException& DebuggableException::operator=(DebuggableException const&) noexcept = default;
DebuggableException::~DebuggableException() = default;

// The name in the type information lives as long as the class does, so nothing needs to be built or kept. It
// is the class's name behind its length in decimal: "12NoSuchObject".
char const* DebuggableException::what() const noexcept {
    char const* name = typeid(*this).name();
    while (*name >= '0' && *name <= '9') ++name;
    return name;
}

OSError::~OSError() = default;

BadFileNameError::BadFileNameError() = default;
BadFileNameError::~BadFileNameError() = default;

void ThrowRealOSError(long code) {
    if (code == MemoryFullError().Code()) throw MemoryFullError();
    if (code == NotAFileError().Code()) throw NotAFileError();
    throw OSError(code);
}
