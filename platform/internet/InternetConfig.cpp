#include <Carbon/InternetConfig.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "foundation/Object.h"
#include "internet/StoredSettings.h"
#include "internet/UserSettings.h"

using namespace Platform;

struct OpaqueICInstance {};

namespace {

// The connections that have not ended.
struct Connections {
    std::mutex mutex;
    std::set<ICInstance> open;

    static Connections& Shared() {
        static auto& connections = *new Connections;
        return connections;
    }
    bool Has(ICInstance instance) {
        std::lock_guard const lock(mutex);
        return open.contains(instance);
    }
};

// Gets the value of a key, what is stored first.
OSErr GetSetting(std::string_view key, std::string& value) {
    OSErr const error = GetStoredSetting(key, value);
    return error == icPrefNotFoundErr ? GetUserSetting(key, value) : error;
}

OSStatus CopySetting(ICInstance instance, ConstStr255Param key, void* buffer, SInt32* size) {
    if (key == nullptr || size == nullptr || (buffer != nullptr && *size < 0)) return paramErr;
    if (!Connections::Shared().Has(instance)) return paramErr;
    std::string value;
    OSErr const error = GetSetting({reinterpret_cast<char const*>(key) + 1, key[0]}, value);
    if (error != noErr) return error;
    std::size_t const room = buffer != nullptr ? static_cast<std::size_t>(*size) : value.size();
    if (buffer != nullptr) std::memcpy(buffer, value.data(), std::min(room, value.size()));
    *size = static_cast<SInt32>(value.size());
    return room < value.size() ? OSStatus{icTruncatedErr} : OSStatus{noErr};
}

}  // namespace

OSStatus ICStart(ICInstance* instance, OSType) {
    if (instance == nullptr) return paramErr;
    *instance = nullptr;
    return Guarded<OSStatus>(memFullErr, [&]() -> OSStatus {
        auto started = std::make_unique<OpaqueICInstance>();
        Connections& connections = Connections::Shared();
        std::lock_guard const lock(connections.mutex);
        connections.open.insert(started.get());
        *instance = started.release();
        return noErr;
    });
}

OSStatus ICStop(ICInstance instance) {
    Connections& connections = Connections::Shared();
    std::lock_guard const lock(connections.mutex);
    if (connections.open.erase(instance) == 0) return paramErr;
    delete instance;
    return noErr;
}

OSStatus ICGetPref(ICInstance instance, ConstStr255Param key, ICAttr* attributes, void* buffer,
                   SInt32* size) {
    OSStatus const status =
        Guarded<OSStatus>(memFullErr, [&] { return CopySetting(instance, key, buffer, size); });
    bool const hasValue = status == noErr || status == icTruncatedErr;
    if (attributes != nullptr) *attributes = hasValue ? 0 : 0xFFFFFFFF;
    if (!hasValue && size != nullptr) *size = 0;
    return status;
}
