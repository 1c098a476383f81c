#include "internet/MailIdentity.h"

#include <gtest/gtest.h>

using namespace Platform;

namespace {

std::string Git(std::string_view config) { return GitEmailIn(config).value_or("(none)"); }
// The address of a value in git's form.
std::string GitValue(std::string const& value) { return Git("[user]\nemail = " + value + "\n"); }

std::string Preference(std::string_view line) { return TextPreferenceIn(line, "k").value_or("(none)"); }

}  // namespace

TEST(GitEmails, AreOfTheSectionUser) {
    EXPECT_EQ("a@b", Git("[core]\n\teditor = vi\n[user]\n\tname = A\n\temail = a@b\n"));
    EXPECT_EQ("a@b", Git("[USER] # me\r\n\tEMail=a@b\r\n"));
    EXPECT_EQ("a@b", Git("[core] x = 1\n[user] email = a@b"));
    EXPECT_EQ("a@b", Git("[core][user] email = a@b"));
    EXPECT_EQ("(none)", Git(""));
    EXPECT_EQ("(none)", Git("email = a@b\n[core]\nemail = a@b"));
    EXPECT_EQ("(none)", Git("[user]\n[core]\nemail = a@b"));
}

TEST(GitEmails, OfSectionsWithOtherNamesAreNone) {
    for (char const* const section :
         {"[user \"x\"]", "[user.x]", "[users]", "[ user ]", "[]", "[user", "[author]"})
        EXPECT_EQ("(none)", Git(section + std::string("\nemail = a@b\n"))) << section;
    EXPECT_EQ("a@b", Git("[x \"]\\\"\"]\nemail = c\n[user]\nemail = a@b"));
}

TEST(GitEmails, AreTheLastOnes) {
    EXPECT_EQ("c", Git("[user]\nemail = a\nemail = b\n[core]\nemail = d\n[user]\nemail = c\n"));
    EXPECT_EQ("", Git("[user]\nemail = a\nemail =\n"));
}

TEST(GitEmails, OfKeysWithOtherNamesAreNone) {
    for (char const* const line :
         {"emails = a", "e-mail = a", "email", "email a", "; email = a", "# email = a", "= a"})
        EXPECT_EQ("(none)", Git("[user]\n" + std::string(line))) << line;
}

TEST(GitEmails, EndBeforeComments) {
    EXPECT_EQ("a@b", GitValue("a@b # mine"));
    EXPECT_EQ("a@b", GitValue("a@b;mine"));
    EXPECT_EQ("a#b", GitValue("\"a#b\" # mine"));
    EXPECT_EQ("", GitValue("# mine"));
}

TEST(GitEmails, KeepBlanksInQuotes) {
    EXPECT_EQ("a b", GitValue("   a b \t"));
    EXPECT_EQ(" a ", GitValue("\" a \"  "));
    EXPECT_EQ("a bc", GitValue("a\" b\"c"));
    EXPECT_EQ("", GitValue("\"\""));
    EXPECT_EQ("(none)", GitValue("\"a"));
}

TEST(GitEmails, HaveEscapes) {
    EXPECT_EQ("a\"\\\n\t\b", GitValue("a\\\"\\\\\\n\\t\\b"));
    EXPECT_EQ("(none)", GitValue("a\\x"));
    EXPECT_EQ("ab", GitValue("a\\\nb"));
    EXPECT_EQ("ab", GitValue("a\\\r\nb"));
    EXPECT_EQ("a", Git("[user]\nemail = a\\"));
    EXPECT_EQ("a", Git("[user]\nname = x\\\nemail = b\nemail = a"));
    EXPECT_EQ("(none)", Git("[user]\nname = x\\\nemail = b"));
}

TEST(GitEmails, MayStandBehindAByteOrderMark) {
    EXPECT_EQ("a@b", Git("\xEF\xBB\xBF[user]\nemail = a@b\n"));
    EXPECT_EQ("(none)", Git("\xEF\xBB[user]\nemail = a@b\n"));
}

TEST(GitEmails, OfIncludedFilesCountInTheirPlaces) {
    auto const email = [](std::string_view config) {
        std::string asked;
        auto const found = GitEmailIn(config, [&](std::string_view path) {
            asked += path;
            return std::string(path == "i" ? "[user]\nemail = i@x\n[include]\npath = j\n" : "");
        });
        return asked + " " + found.value_or("(none)");
    };
    EXPECT_EQ("i i@x", email("[user]\nemail = a\n[Include]\nPath = \"i\"\n"));
    EXPECT_EQ("i a", email("[include]\npath = i\n[user]\nemail = a\n"));
    EXPECT_EQ("kij i@x", email("[include]\npath = k\npath = i\npath = j\n"));
    EXPECT_EQ(" (none)", email("[include \"x\"]\npath = i\n[includes]\npath = i\n[include]\npaths = i\n"));
    EXPECT_EQ(" (none)", email("[user]\npath = i\n[include]\nemail = a\n"));
}

TEST(ThunderbirdProfiles, AreThoseOfTheInstallation) {
    EXPECT_EQ("x.release",
              DefaultProfileIn("[Profile1]\nPath=a\nDefault=1\n[InstallAB12]\nDefault=x.release\n"
                               "Locked=1\n[InstallCD]\nDefault=y\n"));
}

TEST(ThunderbirdProfiles, AreThoseThatAreMarked) {
    EXPECT_EQ("b",
              DefaultProfileIn("[General]\nDefault=9\nPath=c\n[Profile0]\nPath=a\n[Profile1]\r\nDefault=1\r\n"
                               " Path = b \r\n[Profile2]\nPath=d\nDefault=1\n[Install1]\nLocked=1"));
}

TEST(ThunderbirdProfiles, AreTheFirstOnesOtherwise) {
    EXPECT_EQ("a", DefaultProfileIn("[Profile1]\nPath=a\nDefault=0\n[Profile0]\nPath=b\n"));
    EXPECT_EQ("", DefaultProfileIn("Path=a\n[Other]\nPath=b\n[Profile]\nName=x\n"));
    EXPECT_EQ("", DefaultProfileIn(""));
}

TEST(ThunderbirdPreferences, AreTexts) {
    EXPECT_EQ("v", Preference("user_pref(\"k\", \"v\");"));
    EXPECT_EQ("v", Preference("  user_pref ( \"k\" ,\"v\" ) ;\r\n"));
    EXPECT_EQ("", Preference("user_pref(\"k\", \"\");"));
    EXPECT_EQ("\"'\\", Preference("user_pref(\"k\", \"\\\"\\'\\\\\");"));
    EXPECT_EQ("2",
              Preference("user_pref(\"k\", \"1\");\nuser_pref(\"j\", \"3\");\nuser_pref(\"k\", \"2\");"));
}

TEST(ThunderbirdPreferences, OfOtherFormsAreNone) {
    for (char const* const line :
         {"", "user_pref(\"k\", true);", "user_pref(\"k\", 1);", "user_pref(\"K\", \"v\");",
          "// user_pref(\"k\", \"v\");", "pref(\"k\", \"v\");", "user_pref(\"k\", \"v\"",
          "user_pref(\"k\", \"v", "user_pref(\"k\", \"\\u0041\");", "user_pref(\"k\", \"v\\",
          "user_pref(\"k\" \"v\");", "user_pref(\"k"})
        EXPECT_EQ("(none)", Preference(line)) << line;
}

TEST(ThunderbirdEmails, AreOfTheDefaultAccount) {
    EXPECT_EQ("b@y",
              ThunderbirdEmailIn("user_pref(\"mail.account.account1.identities\", \"id1\");\n"
                                 "user_pref(\"mail.account.account2.identities\", \"id3, id2\");\n"
                                 "user_pref(\"mail.accountmanager.accounts\", \"account1,account2\");\n"
                                 "user_pref(\"mail.accountmanager.defaultaccount\", \"account2\");\n"
                                 "user_pref(\"mail.identity.id1.useremail\", \"a@x\");\n"
                                 "user_pref(\"mail.identity.id3.useremail\", \"b@y\");\n"));
}

TEST(ThunderbirdEmails, AreOfTheFirstAccountOtherwise) {
    std::string const text =
        "user_pref(\"mail.account.one.identities\", \"id1\");\n"
        "user_pref(\"mail.accountmanager.accounts\", \" one,two\");\n";
    EXPECT_EQ("", ThunderbirdEmailIn(text));
    EXPECT_EQ("a@x", ThunderbirdEmailIn(text + "user_pref(\"mail.identity.id1.useremail\", \"a@x\");\n"));
}

TEST(ThunderbirdEmails, OfAccountsWithoutIdentitiesAreNone) {
    EXPECT_EQ("", ThunderbirdEmailIn(""));
    EXPECT_EQ("", ThunderbirdEmailIn("user_pref(\"mail.accountmanager.defaultaccount\", \"one\");\n"
                                     "user_pref(\"mail.account.one.identities\", \"\");\n"
                                     "user_pref(\"mail.identity..useremail\", \"a@x\");\n"));
}
