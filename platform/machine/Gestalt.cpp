#include <Carbon/Gestalt.h>

OSErr Gestalt(OSType, SInt32* response) {
    if (response == nullptr) return paramErr;
    *response = 0;
    return gestaltUndefSelectorErr;
}
