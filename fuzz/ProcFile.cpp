// Any bytes as the kernel's files on a process, as the name of a process in them, and as a serial number.

#include <cstring>

#include "Invariants.h"
#include "processes/ProcTexts.h"
#include "processes/SerialNumber.h"

using namespace Platform;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(Fuzz::AsQuery(data, size));
    if (auto const stat = ParseStat(text))
        Fuzz::Hold(stat->parent >= 0 && stat->parent >> kProcessIdBits == 0, "parents have ids of processes");
    if (auto const status = ParseStatus(text)) Fuzz::Hold(status->process > 0, "processes have ids");
    auto const named =
        ParseStat("1 (" + text + ") S 17 1 1 0 -1 4194304 1 2 3 4 50 6 7 8 20 0 1 0 1234 8192 90\n");
    Fuzz::Hold(named && named->parent == 17 && named->active == 56 && named->start == 1234,
               "names are passed over");
    auto const followed = ParseStatus("Tgid:\t5\nUid:\t7\t8\t9\t10\n" + text);
    Fuzz::Hold(followed && followed->process == 5 && followed->user == 7, "first lines count");
    ProcessSerialNumber psn{};
    std::memcpy(&psn, data, size < sizeof psn ? size : sizeof psn);
    if (auto const process = IdentityIn(psn))
        Fuzz::Hold(NumberIn(SerialNumberOf(*process)) == NumberIn(psn),
                   "numbers are made of what is in them");
    return 0;
}
