#include "files/Errors.h"

#include <Carbon/MacErrors.h>

#include <cerrno>

namespace Platform {

OSErr ErrorOfErrno(int number) {
    switch (number) {
        case 0:
            return noErr;
        case ENOENT:
        case ELOOP:
            return fnfErr;
        case ENOTDIR:
            return dirNFErr;
        case EACCES:
            return afpAccessDenied;
        case EPERM:
            return permErr;
        case EROFS:
            return wPrErr;
        case EBUSY:
        case ETXTBSY:
            return fBsyErr;
        case EEXIST:
            return dupFNErr;
        case EISDIR:
            return notAFileErr;
        case ENOSPC:
        case EDQUOT:
            return dskFulErr;
        case EMFILE:
        case ENFILE:
            return tmfoErr;
        case ENAMETOOLONG:
            return errFSNameTooLong;
        case EINVAL:
            return paramErr;
        case EBADF:
            return rfNumErr;
        case ENOMEM:
            return memFullErr;
        case ESTALE:
        case ENODEV:
            return nsvErr;
        case ECANCELED:
            return userCanceledErr;
        default:
            return ioErr;
    }
}

}  // namespace Platform
