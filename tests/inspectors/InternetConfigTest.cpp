// Internet settings, against a program that stands in for the platform's Internet Config.

#include "system/InternetConfig.h"

#include <Carbon/MacErrors.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "Evaluator/Context.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/ArchieServersModule.h"
#include "modules/InternetConfigModule.h"
#include "modules/InternetServiceIterationModule.h"
#include "modules/InternetServicesModule.h"

using namespace std::string_literals;

struct OpaqueICInstance {};

namespace {

OpaqueICInstance connection;
OSStatus startStatus = noErr;
OSType startedBy = 0;
int starts = 0;
std::map<std::string, std::string> values;
std::map<std::string, OSStatus> failures;
std::string asked;
bool tellsTheEnd = false;  // in a process that ends

// The bytes that a value says it has, where it does not have them.
std::optional<SInt32> sizeAtFirst;  // that is told where no room is given

}  // namespace

OSStatus ICStart(ICInstance* instance, OSType signature) {
    ++starts;
    startedBy = signature;
    *instance = startStatus == noErr ? &connection : nullptr;
    return startStatus;
}

OSStatus ICStop(ICInstance instance) {
    if (tellsTheEnd && instance == &connection) static_cast<void>(!write(2, "stopped", 7));
    return noErr;
}

OSStatus ICGetPref(ICInstance instance, ConstStr255Param key, ICAttr*, void* buffer, SInt32* size) {
    asked.assign(reinterpret_cast<char const*>(key) + 1, key[0]);
    if (instance != &connection) return paramErr;
    auto const failure = failures.find(asked);
    auto const found = values.find(asked);
    if (failure != failures.end() || found == values.end()) {
        *size = 0;
        return failure != failures.end() ? failure->second : OSStatus{icPrefNotFoundErr};
    }
    std::string const& value = found->second;
    SInt32 const room = *size;
    *size = static_cast<SInt32>(value.size());
    if (buffer == nullptr) {
        *size = sizeAtFirst.value_or(*size);
        return noErr;
    }
    std::memcpy(buffer, value.data(), std::min(value.size(), static_cast<std::size_t>(room)));
    return room < *size ? icTruncatedErr : noErr;
}

// Of exactly the size, so that reading beyond it shows.
void* Allocate_Inspector_Memory(unsigned int size) {
    static std::vector<std::unique_ptr<unsigned char[]>> blocks;
    blocks.push_back(std::make_unique<unsigned char[]>(size));
    return blocks.back().get();
}

namespace {

// A test with settings of its own.
class InternetSettings : public testing::Test {
  protected:
    ~InternetSettings() override {
        values.clear();
        failures.clear();
        sizeAtFirst.reset();
        startStatus = noErr;
    }

    static InternetConfig const settings;

    // Asks; what is thrown is a status, NoSuchObject that of a missing setting.
    template <class Question>
    static OSStatus StatusOf(Question const& question) {
        try {
            question();
            return noErr;
        } catch (NoSuchObject const&) {
            return icPrefNotFoundErr;
        } catch (OSError const& error) {
            return error.Code();
        }
    }
    static file_signature Helper(std::string_view name) {
        return helper_of(Bytes(name), name.size(), settings);
    }
    static std::vector<std::string> Archies() {
        std::vector<std::string> names;
        ArchieIterator iterator;
        Collect([&] { names.push_back(Text(iterator.First(settings))); },
                [&] { names.push_back(Text(iterator.Next(settings))); });
        return names;
    }
    // Each as its name, port and protocols.
    static std::vector<std::string> Services() {
        std::vector<std::string> rows;
        ICServiceIterator iterator;
        auto const add = [&](ICService const& service) {
            rows.push_back(Text(name_of(service)) + " " + std::to_string(port_of(service)) +
                           (tcp_of(service) ? " tcp" : "") + (udp_of(service) ? " udp" : ""));
        };
        Collect([&] { add(iterator.First(settings)); }, [&] { add(iterator.Next(settings)); });
        return rows;
    }

  private:
    // The end stays the end.
    template <class First, class Next>
    static void Collect(First const& first, Next const& next) {
        OSStatus status = StatusOf(first);
        bool const hasBegun = status == noErr;
        while (status == noErr) status = StatusOf(next);
        EXPECT_EQ(icPrefNotFoundErr, status);
        if (hasBegun) {
            EXPECT_EQ(icPrefNotFoundErr, StatusOf(next));
        }
    }
};

InternetConfig const InternetSettings::settings = InternetConfig_of();

using Rows = std::vector<std::string>;

}  // namespace

TEST_F(InternetSettings, AreAskedForByOneConnection) {
    startStatus = -50;
    EXPECT_EQ(-50, StatusOf([] { email_of(settings); }));
    int const failed = starts;
    startStatus = noErr;
    values["Email"] = "\3a@b";
    EXPECT_EQ("a@b", Text(email_of(settings)));
    EXPECT_EQ("a@b", Text(email_of(settings)));
    EXPECT_LE(starts, failed + 1);
    EXPECT_EQ(0x516D7678u, startedBy);
}

TEST_F(InternetSettings, EndTheirConnectionAtTheEnd) {
    EXPECT_EXIT(
        {
            tellsTheEnd = true;
            ICRecord::theICRecord();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "stopped");
}

TEST_F(InternetSettings, HaveTheirKeys) {
    StatusOf([] { email_of(settings); });
    EXPECT_EQ("Email", asked);
    StatusOf([] { signature_of(settings); });
    EXPECT_EQ("Signature", asked);
    StatusOf([] { socks_of(settings); });
    EXPECT_EQ("UseSocks", asked);
    StatusOf([] { download_of(settings); });
    EXPECT_EQ("DownloadFolder", asked);
    StatusOf([] { font_of(settings); });
    EXPECT_EQ("PrinterFont", asked);
    StatusOf([] { Helper("http"); });
    EXPECT_EQ("Helper\xA5http", asked);
    Archies();
    EXPECT_EQ("ArchieAll", asked);
    Services();
    EXPECT_EQ("Services", asked);
}

TEST_F(InternetSettings, ThatFailAreThePlatformsStatus) {
    for (OSStatus const status : {icPrefNotFoundErr, icPrefDataErr, icTruncatedErr, paramErr, memFullErr}) {
        for (char const* const key : {"Email", "Signature", "UseSocks", "DownloadFolder", "PrinterFont",
                                      "Helper\xA5x", "ArchieAll", "Services"})
            failures[key] = status;
        EXPECT_EQ(status, StatusOf([] { email_of(settings); }));
        EXPECT_EQ(status, StatusOf([] { signature_of(settings); }));
        EXPECT_EQ(status, StatusOf([] { socks_of(settings); }));
        EXPECT_EQ(status, StatusOf([] { download_of(settings); }));
        EXPECT_EQ(status, StatusOf([] { font_of(settings); }));
        EXPECT_EQ(status, StatusOf([] { Helper("x"); }));
        EXPECT_EQ(status, StatusOf([] { ArchieIterator().First(settings); }));
        EXPECT_EQ(status, StatusOf([] { ICServiceIterator().First(settings); }));
    }
}

TEST_F(InternetSettings, OfTheAddressAreTheCharacters) {
    values["Email"] = "\0"s;
    EXPECT_EQ("", Text(email_of(settings)));
    values["Email"] = '\xFF' + std::string(255, '\xE9');
    EXPECT_EQ(std::string(255, '\xE9'), Text(email_of(settings)));
    values["Email"] = "\2ab, and more";
    EXPECT_EQ("ab", Text(email_of(settings)));
}

TEST_F(InternetSettings, OfTheAddressThatAreCutOff) {
    for (char const* const value : {"", "\2a", "\xFF"}) {
        values["Email"] = value;
        EXPECT_EQ(icPrefDataErr, StatusOf([] { email_of(settings); })) << value;
    }
    values["Email"] = std::string(257, '\1');
    EXPECT_EQ(icTruncatedErr, StatusOf([] { email_of(settings); }));
}

TEST_F(InternetSettings, OfTheSignatureAreAllBytes) {
    for (std::string const& value : {""s, "a"s, "-- \r\n\0\xE9"s, std::string(100000, 'a')}) {
        values["Signature"] = value;
        EXPECT_EQ(value, Text(signature_of(settings)));
    }
}

TEST_F(InternetSettings, OfTheFirewallAreAnyByteButZero) {
    for (auto const& [value, truth] : {std::pair("\0"s, false), {"\1"s, true}, {"\xFF"s, true}}) {
        values["UseSocks"] = value;
        EXPECT_EQ(truth, static_cast<bool>(socks_of(settings)));
    }
    values["UseSocks"] = "";
    EXPECT_EQ(icPrefDataErr, StatusOf([] { socks_of(settings); }));
    values["UseSocks"] = "\1\1";
    EXPECT_EQ(icTruncatedErr, StatusOf([] { socks_of(settings); }));
}

TEST_F(InternetSettings, OfTheDownloadFolderAreItsItem) {
    TemporaryFolder const here;
    here.MakeFolder("got");
    ICFileSpec spec{};
    FSRef parent, reference;
    Owned<CFURLRef> const url(NewURL(here.Path("got"), true));
    ASSERT_TRUE(CFURLGetFSRef(url, &reference));
    ASSERT_EQ(noErr, FSGetCatalogInfo(&reference, kFSCatInfoNone, nullptr, nullptr, &spec.fss, &parent));
    values["DownloadFolder"] = std::string(reinterpret_cast<char const*>(&spec), sizeof spec);
    EXPECT_EQ(here.Path("got"), Path(download_of(settings)));
    values["DownloadFolder"] += "an alias";
    EXPECT_EQ(here.Path("got"), Path(download_of(settings)));
    std::filesystem::remove(here.Path("got"));
    EXPECT_THROW(download_of(settings), FailedToGetFileItem);
    for (std::size_t const size : {0u, 1u, 111u}) {
        values["DownloadFolder"].resize(size);
        EXPECT_EQ(icPrefDataErr, StatusOf([] { download_of(settings); })) << size;
    }
}

TEST_F(InternetSettings, OfTheFontAreItsName) {
    ICFontRecord record{12, 1, 0, "\4Mono"};
    values["PrinterFont"] = std::string(reinterpret_cast<char const*>(&record), sizeof record);
    EXPECT_EQ("Mono", Text(font_of(settings)));
    values["PrinterFont"] = std::string(260, '\xFF');
    EXPECT_EQ(std::string(255, '\xFF'), Text(font_of(settings)));
    values["PrinterFont"].resize(259);
    EXPECT_EQ(icPrefDataErr, StatusOf([] { font_of(settings); }));
    values["PrinterFont"].resize(261);
    EXPECT_EQ(icTruncatedErr, StatusOf([] { font_of(settings); }));
}

TEST_F(InternetSettings, OfHelpersAreTheirCodes) {
    ICAppSpec spec{0x4D41494C, "\6Mailer"};
    values["Helper\xA5mailto"] = std::string(reinterpret_cast<char const*>(&spec), sizeof spec);
    EXPECT_EQ(0x4D41494Cu, Helper("mailto").code);
    EXPECT_EQ(icPrefNotFoundErr, StatusOf([] { Helper("http"); }));
    values["Helper\xA5mailto"].resize(67);
    EXPECT_EQ(icPrefDataErr, StatusOf([] { Helper("mailto"); }));
}

TEST_F(InternetSettings, OfHelpersHaveNamesOf248BytesAtMost) {
    ICAppSpec spec{1, ""};
    std::string const name(248, 'a');
    values["Helper\xA5" + name] = values["Helper\xA5"] =
        std::string(reinterpret_cast<char const*>(&spec), sizeof spec);
    EXPECT_EQ(1u, Helper(name).code);
    EXPECT_EQ(1u, Helper("").code);
    asked = "nothing";
    EXPECT_THROW(Helper(name + "a"), NoSuchObject);
    EXPECT_THROW(helper_of(nullptr, ~0ul, settings), NoSuchObject);
    EXPECT_EQ("nothing", asked);
}

TEST_F(InternetSettings, OfArchieServersAreAsManyAsTheCount) {
    values["ArchieAll"] = "\0\3\4one.\0\3two\3not"s;
    EXPECT_EQ((Rows{"one.", "", "two"}), Archies());
    values["ArchieAll"] = "\0\0\3one"s;
    EXPECT_EQ(Rows(), Archies());
    std::string many = "\1\1"s;
    for (int i = 0; i < 257; ++i) many += "\1a";
    values["ArchieAll"] = many;
    EXPECT_EQ(257u, Archies().size());
}

TEST_F(InternetSettings, OfArchieServersThatAreCutOffEndThere) {
    values["ArchieAll"] = "\xFF\xFF\3one\3tw";
    EXPECT_EQ(Rows{"one"}, Archies());
    values["ArchieAll"] = "\0\2\3one"s;
    EXPECT_EQ(Rows{"one"}, Archies());
    for (std::string const& value : {""s, "\1"s, "\0\1"s, "\0\1\3on"s}) {
        values["ArchieAll"] = value;
        EXPECT_EQ(Rows(), Archies());
    }
}

TEST_F(InternetSettings, OfServicesAreTheirRows) {
    values["Services"] = "\0\3\4http\0\x50\0\3\4ntp4\x12\x34\0\2\6dummy0\xFF\xFF\xFF\xFC"s;
    EXPECT_EQ((Rows{"http 80 tcp udp", "ntp4 4660 udp", "dummy0 65535"}), Services());
    values["Services"] = "\0\1\4http\0\x50\0\1\4ntp4\0\1\0\1"s;
    EXPECT_EQ(Rows{"http 80 tcp"}, Services());
    values["Services"] = "\0\0\4http\0\x50\0\1"s;
    EXPECT_EQ(Rows(), Services());
    values["Services"] = "\0\1\xFF"s + std::string(255, 'a') + "\0\1\0\1"s;
    EXPECT_EQ(Rows{std::string(255, 'a') + " 1 tcp"}, Services());
}

TEST_F(InternetSettings, OfServicesEndAtAShortName) {
    values["Services"] = "\0\3\4http\0\x50\0\3\3ftp\0\x15\0\1\4ntp4\0\1\0\1"s;
    EXPECT_EQ(Rows{"http 80 tcp udp"}, Services());
    values["Services"] = "\0\2\0\0\x15\0\1\4ntp4\0\1\0\1"s;
    EXPECT_EQ(Rows(), Services());
}

TEST_F(InternetSettings, OfServicesThatAreCutOffEndThere) {
    std::string const whole = "\0\2\4http\0\x50\0\3\4ntp4\0\1\0\1"s;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        values["Services"] = whole.substr(0, size);
        EXPECT_EQ(size < 11 ? 0u : 1u, Services().size()) << size;
    }
}

TEST_F(InternetSettings, AreReadAnewByEachFirst) {
    ICServiceIterator services;
    values["Services"] = "\0\1\4http\0\x50\0\1"s;
    EXPECT_EQ("http", Text(services.First(settings).name));
    values["Services"] = "\0\2\4smtp\0\x19\0\1\4http\0\x50\0\1"s;
    EXPECT_EQ("smtp", Text(services.First(settings).name));
    EXPECT_EQ("http", Text(services.Next(settings).name));
    ArchieIterator archies;
    values["ArchieAll"] = "\0\1\1a"s;
    EXPECT_EQ("a", Text(archies.First(settings)));
    values["ArchieAll"] = "\0\1\1b"s;
    EXPECT_EQ("b", Text(archies.First(settings)));
}

TEST_F(InternetSettings, ThatGrowBetweenTheReadingsFail) {
    values["Signature"] = "abc";
    EXPECT_EQ("abc", Text(signature_of(settings)));
    sizeAtFirst = 2;
    EXPECT_EQ(icTruncatedErr, StatusOf([] { signature_of(settings); }));
}

TEST(InternetModules, RegisterTheirTablesInOrder) {
    ExpectRows<ArchieServersModule>(
        {"iterated property \"archie\" \"archies\" of \"internetconfig\": \"string\""});
    ExpectRows<InternetServicesModule>({"type \"icservice\"",
                                        "property \"name\" \"names\" of \"icservice\": \"string\"",
                                        "property \"port\" \"ports\" of \"icservice\": \"integer\"",
                                        "property \"tcp\" \"tcps\" of \"icservice\": \"boolean\"",
                                        "property \"udp\" \"udps\" of \"icservice\": \"boolean\""});
    ExpectRows<InternetServiceIterationModule>(
        {"iterated property \"service\" \"services\" of \"internetconfig\": \"icservice\""});
    ExpectRows<InternetConfigModule>(
        {"type \"internetconfig\"", "property \"internet config\" \"internet configs\": \"internetconfig\"",
         "property \"email\" \"emails\" of \"internetconfig\": \"string\"",
         "property \"signature\" \"signatures\" of \"internetconfig\": \"string\"",
         "property \"socks\" \"sockses\" of \"internetconfig\": \"boolean\"",
         "property \"download folder\" \"download folders\" of \"internetconfig\": \"folder\"",
         "property \"font\" \"fonts\" of \"internetconfig\": \"string\"",
         "property \"helper\" \"helpers\" [\"string\"] of \"internetconfig\": \"file signature\""});
}

TEST(InternetModules, RegisterTheSizesOfTheirTypes) {
    InternetServicesModule const services;
    InternetConfigModule const settings;
    EXPECT_EQ(sizeof(ICService), RegisteredAs("type \"icservice\"").valueSize);
    EXPECT_EQ(1u, RegisteredAs("type \"internetconfig\"").valueSize);
}

TEST(InternetModules, LeadToTheirInspectors) {
    InternetServicesModule const module;
    ICService const service{{Bytes("http"), 4}, 80, 2};
    auto const ask = [&]<class R>(char const* row, Slot<R>& slot) -> R& {
        Registration const one = RegisteredAs(row);
        one.get(slot, nullptr, &service, nullptr, one.context);
        return slot.Value();
    };
    Slot<inspector_string> text;
    Slot<integer> number;
    Slot<boolean> truth;
    EXPECT_EQ("http", Text(ask("property \"name\" \"names\" of \"icservice\": \"string\"", text)));
    EXPECT_EQ(80, ask("property \"port\" \"ports\" of \"icservice\": \"integer\"", number));
    EXPECT_FALSE(ask("property \"tcp\" \"tcps\" of \"icservice\": \"boolean\"", truth));
    EXPECT_TRUE(ask("property \"udp\" \"udps\" of \"icservice\": \"boolean\"", truth));
}
