#include "internet/Services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Platform::InternetService;
using Platform::PackServices;
using Platform::ServicesIn;
using testing::IsEmpty;

namespace Platform {

void PrintTo(InternetService const& service, std::ostream* stream) {
    *stream << service.name << ' ' << service.port << ' ' << service.flags;
}

}  // namespace Platform

namespace {

using Services = std::vector<InternetService>;

constexpr UInt16 tcp = 1, udp = 2, both = 3;

}  // namespace

TEST(InternetServices, AreNamesPortsAndProtocols) {
    EXPECT_EQ(ServicesIn("http 80/tcp www # the web\nntp4\t123/udp\r\n  imap2   143/tcp"),
              (Services{{"http", 80, tcp}, {"ntp4", 123, udp}, {"imap2", 143, tcp}}));
}

TEST(InternetServices, OfOneNameAndPortAreOne) {
    EXPECT_EQ(ServicesIn("domain 53/tcp\nhttp 80/tcp\ndomain 53/udp\ndomain 54/udp\ndomain 53/udp\n"),
              (Services{{"domain", 53, both}, {"http", 80, tcp}, {"domain", 54, udp}}));
}

TEST(InternetServices, WithShortNamesComeLast) {
    EXPECT_EQ(
        ServicesIn("ftp 21/tcp\nhttp 80/tcp\nx 1/udp\nsmtp 25/tcp\nssh 22/tcp"),
        (Services{{"http", 80, tcp}, {"smtp", 25, tcp}, {"ftp", 21, tcp}, {"x", 1, udp}, {"ssh", 22, tcp}}));
}

TEST(InternetServices, OfOtherProtocolsAreNone) {
    EXPECT_THAT(ServicesIn("sctp-tunneling 9899/sctp\nrtmp 1/ddp\nhttp 80/TCP\n"), IsEmpty());
    EXPECT_EQ(ServicesIn("http 80/sctp\nhttp 80/udp"), (Services{{"http", 80, udp}}));
}

TEST(InternetServices, OnLinesOfOtherFormsArePassedOver) {
    for (char const* const line :
         {"", "http", "http 80", "http 80/", "http /tcp", "80/tcp", "# http 80/tcp", "http# 80/tcp",
          "http -1/tcp", "http 65536/tcp", "http 99999999999/tcp", "http 8x/tcp", "http 080/tcp",
          "http 0x50/tcp", "http 80 /tcp", "http +80/tcp"})
        EXPECT_THAT(ServicesIn(line), IsEmpty()) << line;
}

TEST(InternetServices, HavePortsOf16Bits) {
    EXPECT_EQ(ServicesIn("none 0/tcp\nlast 65535/udp"), (Services{{"none", 0, tcp}, {"last", 65535, udp}}));
}

TEST(InternetServices, HaveNamesOf255BytesAtMost) {
    std::string const name(255, 'a');
    EXPECT_EQ(ServicesIn(name + " 1/tcp\n" + name + "a 1/tcp"), (Services{{name, 1, tcp}}));
}

TEST(InternetServices, AreTheFirst65535) {
    std::string text = "ftp 21/tcp\n";
    for (int port = 0; port < 65535; ++port) text += "name " + std::to_string(port) + "/tcp\n";
    Services const services = ServicesIn(text);
    ASSERT_EQ(65535u, services.size());
    EXPECT_EQ((InternetService{"ftp", 21, tcp}), services.back());
    EXPECT_EQ((InternetService{"name", 65533, tcp}), services[65533]);
}

TEST(InternetServices, ArePackedWithoutGaps) {
    using namespace std::string_literals;
    EXPECT_EQ("\0\0"s, PackServices({}));
    Services const services{{"http", 80, tcp}, {"a", 0x1234, both}};
    EXPECT_EQ("\0\2\4http\0\x50\0\1\1a\x12\x34\0\3"s, PackServices(services));
}
