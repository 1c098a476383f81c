// An inspector library whose phrases take as long as a test wants, and look at as many items.

#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "Carbon/Files.h"
#include "Evaluator/Context.h"
#include "frame/Adapters.h"

namespace {

bool IsOpen(unsigned char const* path, unsigned long size) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return access(std::string(reinterpret_cast<char const*>(path), size).c_str(), F_OK) == 0;
}

// Waits until there is a file of that path, and gives the host its time.
integer gate(unsigned char const* path, unsigned long size) {
    InspectorContext* const context = Get_Generic_Inspector_Context();
    while (!IsOpen(path, size)) dynamic_cast<InspectorYieldContext&>(*context).trickle(context);
    return 0;
}
// The same, and never gives anybody time.
integer stubborn_gate(unsigned char const* path, unsigned long size) {
    while (!IsOpen(path, size)) {
    }
    return 0;
}
// Looks at the root so many times.
integer look(unsigned long long times) {
    for (unsigned long long i = 0; i < times; ++i) {
        FSRef root;
        FSPathMakeRef(reinterpret_cast<unsigned char const*>("/"), &root, nullptr);
    }
    return static_cast<long long>(times);
}

struct Module {
    NamedGlobalProperty<integer> gates{"gate", "gates", "integer", gate};
    NamedGlobalProperty<integer> stubbornGates{"stubborn gate", "stubborn gates", "integer", stubborn_gate};
    NumberedGlobalProperty<integer> looks{"look", "looks", "integer", look};
} module;

}  // namespace
