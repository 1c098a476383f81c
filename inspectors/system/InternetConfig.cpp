#include "system/InternetConfig.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"
#include "Evaluator/MacintoshPlatform.h"

using MacintoshPlatform::FailedToGetFileItem;
using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLocation;
using MacintoshPlatform::MacFileInfo;

namespace {

constexpr OSType kOwnSignature = 0x516D7678;  // 'Qmvx'

// Keys are Pascal strings.
constexpr unsigned char kEmail[] = "\5Email";
constexpr unsigned char kSignature[] = "\11Signature";
constexpr unsigned char kUseSocks[] = "\10UseSocks";
constexpr unsigned char kDownloadFolder[] = "\16DownloadFolder";
constexpr unsigned char kPrinterFont[] = "\13PrinterFont";
constexpr unsigned char kArchieAll[] = "\11ArchieAll";
constexpr unsigned char kServices[] = "\10Services";
constexpr char kHelper[] = "Helper\xA5";  // before the protocol

constexpr std::size_t kShortestService = 4;  // characters of a name that does not end the services

void Check(OSStatus status) {
    if (status == icPrefNotFoundErr) throw NoSuchObject();
    if (status != noErr) throw OSError(status);
}

// The bytes of a value in room of so many.
ConstData Read(ConstStr255Param key, unsigned char* room, SInt32 size) {
    SInt32 const most = size;
    Check(ICGetPref(ICRecord::theICRecord().instance, key, nullptr, room, &size));
    return {room, static_cast<std::size_t>(std::min(most, size))};
}

ConstData ReadIntoMemory(ConstStr255Param key, SInt32 size) {
    return Read(key, static_cast<unsigned char*>(Allocate_Inspector_Memory(static_cast<unsigned>(size))),
                size);
}

// The bytes of a value of any size.
ConstData ReadAll(ConstStr255Param key) {
    SInt32 size = 0;
    ICGetPref(ICRecord::theICRecord().instance, key, nullptr, nullptr, &size);
    return ReadIntoMemory(key, size);
}

// A value that is a record of the platform's. It lies where any record may.
template <class Record>
Record const& RecordIn(ConstData value) {
    if (value.Size() < sizeof(Record)) throw OSError(icPrefDataErr);
    return *reinterpret_cast<Record const*>(value.begin());
}

// The characters of a Pascal string that lies in so many bytes.
inspector_string Characters(ConstData string) {
    if (string.Empty() || string.Size() <= *string.begin()) throw OSError(icPrefDataErr);
    return {string.begin() + 1, *string.begin()};
}

std::uint16_t NumberAt(unsigned char const* bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

std::size_t BytesBetween(unsigned char const* position, unsigned char const* end) {
    return static_cast<std::size_t>(end - position);
}

}  // namespace

// The connection

ICRecord::ICRecord() {
    if (OSStatus const status = ICStart(&instance, kOwnSignature); status != noErr) throw OSError(status);
}
ICRecord::~ICRecord() { ICStop(instance); }

ICRecord const& ICRecord::theICRecord() {
    static ICRecord const record;
    return record;
}

// Reading

inspector_string InternetConfig::GetPString(ConstStr255Param key) {
    return Characters(ReadIntoMemory(key, sizeof(Str255)));
}

ConstData InternetConfig::GetText(ConstStr255Param key) { return ReadAll(key); }

ICFileSpec InternetConfig::GetFileSpec(ConstStr255Param key) { return RecordIn<ICFileSpec>(ReadAll(key)); }

bool InternetConfig::GetBoolean(ConstStr255Param key) {
    unsigned char truth;
    ConstData const value = Read(key, &truth, sizeof truth);
    if (value.Empty()) throw OSError(icPrefDataErr);
    return truth != 0;
}

ICFontRecord const& InternetConfig::GetFont(ConstStr255Param key) {
    return RecordIn<ICFontRecord>(ReadIntoMemory(key, sizeof(ICFontRecord)));
}

ICAppSpec const& InternetConfig::GetAppSpec(ConstStr255Param key) {
    return RecordIn<ICAppSpec>(ReadIntoMemory(key, sizeof(ICAppSpec)));
}

// The settings

InternetConfig InternetConfig_of() { return {}; }

inspector_string email_of(InternetConfig const&) { return InternetConfig::GetPString(kEmail); }

inspector_string signature_of(InternetConfig const&) {
    ConstData const text = InternetConfig::GetText(kSignature);
    return {text.begin(), static_cast<std::uint32_t>(text.Size())};
}

boolean socks_of(InternetConfig const&) { return InternetConfig::GetBoolean(kUseSocks); }

folder download_of(InternetConfig const&) {
    ICFileSpec const spec = InternetConfig::GetFileSpec(kDownloadFolder);
    FileLocation const location = MacintoshPlatform::MakeFileLocation(spec.fss);
    MacFileInfo const info(location);
    if (info.valid == 0) throw FailedToGetFileItem(info.status);
    return folder(FileItem(location, info));
}

inspector_string font_of(InternetConfig const&) {
    ICFontRecord const& font = InternetConfig::GetFont(kPrinterFont);
    return Characters({font.font, sizeof font.font});
}

file_signature helper_of(unsigned char const* name, unsigned long length, InternetConfig const&) {
    constexpr std::size_t prefix = sizeof kHelper - 1;
    Str255 key;
    if (length > sizeof key - 1 - prefix) throw NoSuchObject();
    key[0] = static_cast<unsigned char>(prefix + length);
    std::memcpy(key + 1, kHelper, prefix);
    if (length != 0) std::memcpy(key + 1 + prefix, name, length);
    return {InternetConfig::GetAppSpec(key).fCreator};
}

// The Archie servers

STRSharp::STRSharp(ConstData list) : position(list.begin()), end(list.end()) {
    if (list.Size() < sizeof count) return;
    count = NumberAt(position);
    position += sizeof count;
}

inspector_string STRSharp::NextString() {
    if (next == count || position == end || BytesBetween(position, end) <= *position) throw NoSuchObject();
    inspector_string const string(position + 1, *position);
    position = string.end();
    ++next;
    return string;
}

inspector_string ArchieIterator::First(InternetConfig const& settings) {
    strings = STRSharp(InternetConfig::GetText(kArchieAll));
    return Next(settings);
}

inspector_string ArchieIterator::Next(InternetConfig const&) { return strings.NextString(); }

// The services

inspector_string name_of(ICService const& service) { return service.name; }
integer port_of(ICService const& service) { return service.port; }
boolean tcp_of(ICService const& service) { return (service.flags & kICServicesTCP) != 0; }
boolean udp_of(ICService const& service) { return (service.flags & kICServicesUDP) != 0; }

ICService ICServiceIterator::First(InternetConfig const& settings) {
    bytes = InternetConfig::GetText(kServices);
    if (bytes.Size() < sizeof count) throw NoSuchObject();
    count = NumberAt(bytes.begin());
    next = 0;
    position = bytes.begin() + sizeof count;
    return Next(settings);
}

ICService ICServiceIterator::Next(InternetConfig const&) {
    if (next == count) throw NoSuchObject();
    ICService const service = NextService();
    ++next;
    return service;
}

ICService ICServiceIterator::NextService() {
    constexpr std::size_t numbers = 4;  // bytes behind the name
    if (position == bytes.end() || BytesBetween(position, bytes.end()) <= *position + numbers)
        throw NoSuchObject();
    inspector_string const name(position + 1, *position);
    if (name.length < kShortestService) throw NoSuchObject();
    position = name.end() + numbers;
    return {name, NumberAt(name.end()), NumberAt(name.end() + 2)};
}
