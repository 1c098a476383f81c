#include "EmulatedDevices.h"

#include <link.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstring>
#include <string_view>

void EmulatedDevices::Add(std::string const& devices) const {
    GError* error = nullptr;
    EXPECT_TRUE(umockdev_testbed_add_from_string(testbed.get(), devices.c_str(), &error)) << error->message;
}

void EmulatedDevices::Answer(std::string const& file, Function const& answer) {
    function = answer;
    handler.reset(umockdev_ioctl_base_new());
    g_signal_connect(handler.get(), "handle-ioctl", G_CALLBACK(Handle), this);
    EXPECT_TRUE(umockdev_testbed_attach_ioctl(testbed.get(), file.c_str(), handler.get(), nullptr)) << file;
}

gboolean EmulatedDevices::Handle(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* self) {
    auto const& answer = static_cast<EmulatedDevices const*>(self)->function;
    int const error =
        answer(umockdev_ioctl_client_get_request(client), *umockdev_ioctl_client_get_arg(client));
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
    return TRUE;
}

Reference<UMockdevIoctlData> Pointed(UMockdevIoctlData& data, std::size_t offset, std::size_t size) {
    return Reference<UMockdevIoctlData>(umockdev_ioctl_data_resolve(&data, offset, size, nullptr));
}

namespace {

constexpr char kPreload[] = "libumockdev-preload.so.0";

// The path of the sanitizer's library, which has to come first in a program; empty without one.
std::string Sanitizer() {
    std::string path;
    auto const look = [](dl_phdr_info* library, std::size_t, void* found) {
        if (std::string_view(library->dlpi_name).find("/libasan.") == std::string_view::npos) return 0;
        *static_cast<std::string*>(found) = library->dlpi_name;
        return 1;
    };
    dl_iterate_phdr(look, &path);
    return path;
}

}  // namespace

// The library that shows /sys and /dev otherwise must be there before the program is: it starts itself again.
int main(int count, char** arguments) {
    char const* const loaded = getenv("LD_PRELOAD");
    if (loaded == nullptr || std::strstr(loaded, kPreload) == nullptr) {
        setenv("LD_PRELOAD", (Sanitizer() + ":" + kPreload).c_str(), 1);
        execv("/proc/self/exe", arguments);
        return EXIT_FAILURE;
    }
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
