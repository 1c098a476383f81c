// Which application is in charge of a kind, by the files of the desktop; compared with what xdg-mime(1) says.

#include <Carbon/MacErrors.h>

#include <cstdio>

#include "applications/Handlers.h"
#include "platform/OwnApplications.h"

using namespace Platform;

namespace {

constexpr char const* kType = "x-scheme-handler/mailto";
constexpr char const* kConfiguration = "home/.config";
constexpr char const* kOwn = "home/.local/share/applications";

class MimeApplications : public OwnApplications {
  protected:
    MimeApplications() {
        for (char const* const id : {"a", "b", "c", "d"}) AddEntry(own, std::string(id) + ".desktop");
    }

    static HandlingApplication Handler() {
        HandlingApplication application;
        EXPECT_EQ(noErr, GetHandler(kType, application));
        return application;
    }
    static std::string Id() { return Handler().id; }
    /// The answer of the desktop's tool. It gives up where there is no known desktop.
    static std::string Peer() {
        FILE* const tool = popen((std::string("xdg-mime query default ") + kType).c_str(), "re");
        std::string text;
        for (int byte = getc(tool); byte != EOF && byte != '\n'; byte = getc(tool))
            text += static_cast<char>(byte);
        int const status = pclose(tool);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 127) << "needs the package xdg-utils";
        return text;
    }
    void Put(std::string const& file, std::string const& group, std::string const& ids) const {
        Write(file, "[" + group + "]\n" + kType + "=" + ids + "\n");
    }
    void PutDefault(std::string const& file, std::string const& ids) const {
        Put(file, "Default Applications", ids);
    }
};

}  // namespace

TEST_F(MimeApplications, NoneWhereNothingIsSaid) {
    HandlingApplication application{"id", "name", 5};
    EXPECT_EQ(noErr, GetHandler(kType, application));
    EXPECT_EQ("", application.id);
    EXPECT_EQ("", application.name);
    EXPECT_EQ(0u, application.creator);
    EXPECT_EQ("", Peer());
}

TEST_F(MimeApplications, TellWhatTheEntrySays) {
    AddEntry(own, "m.desktop", "X-Creator-Code=mail\n");
    PutDefault(std::string(kConfiguration) + "/mimeapps.list", "m.desktop");
    EXPECT_EQ("m.desktop", Handler().id);
    EXPECT_EQ("m.desktop", Handler().name);
    EXPECT_EQ(0x6D61696Cu, Handler().creator);
}

// The files in the order in which they count: each one takes the place of those behind it.
TEST_F(MimeApplications, DefaultsByTheOrderOfTheFiles) {
    std::string const ids[] = {"a.desktop", "b.desktop", "c.desktop", "d.desktop"};
    std::string const lists[] = {"second/applications/mimeapps.list",
                                 "second/applications/two-mimeapps.list",
                                 "first/applications/mimeapps.list",
                                 std::string(kOwn) + "/mimeapps.list",
                                 std::string(kOwn) + "/one-mimeapps.list",
                                 "xdg/mimeapps.list",
                                 "xdg/two-mimeapps.list",
                                 "xdg/one-mimeapps.list",
                                 "home/.config/mimeapps.list",
                                 "home/.config/two-mimeapps.list",
                                 "home/.config/one-mimeapps.list"};
    std::size_t next = 0;
    for (std::string const& list : lists) {
        std::string const& id = ids[next++ % 4];
        PutDefault(list, id);
        EXPECT_EQ(id, Id()) << list;
        EXPECT_EQ(id, Peer()) << list;
    }
}

TEST_F(MimeApplications, ListsOfDesktopsTellOfDefaultsOnly) {
    Write("home/.config/mimeapps.list", "[Added Associations]\n" + std::string(kType) + "=b.desktop\n");
    Write("home/.config/one-mimeapps.list", "[Added Associations]\n" + std::string(kType) +
                                                "=a.desktop\n[Removed Associations]\n" + std::string(kType) +
                                                "=b.desktop\n");
    EXPECT_EQ("b.desktop", Id());
}

TEST_F(MimeApplications, FoldersByTheirVariables) {
    PutDefault("home/.config/mimeapps.list", "a.desktop");
    PutDefault("elsewhere/mimeapps.list", "b.desktop");
    Variable const elsewhere("XDG_CONFIG_HOME", here.Path("elsewhere"));
    EXPECT_EQ("b.desktop", Id());
    EXPECT_EQ("b.desktop", Peer());
}

TEST_F(MimeApplications, DefaultsThatAreNotThereArePassedOver) {
    PutDefault("home/.config/mimeapps.list", "gone.desktop");
    PutDefault("xdg/mimeapps.list", "b.desktop");
    EXPECT_EQ("b.desktop", Id());
    EXPECT_EQ("b.desktop", Peer());
    PutDefault("home/.config/mimeapps.list", "gone.desktop;c.desktop;");
    EXPECT_EQ("c.desktop", Id()) << "the tool looks at the first of a list only";
}

TEST_F(MimeApplications, HiddenEntriesAreNotThere) {
    AddEntry(own, "hidden.desktop", "Hidden=true\n");
    AddEntry(first, "hidden.desktop");
    PutDefault("home/.config/mimeapps.list", "hidden.desktop;b.desktop");
    EXPECT_EQ("b.desktop", Id()) << "nor those that they hide";
}

TEST_F(MimeApplications, EntriesWhoseProgramIsMissingAreNotThere) {
    AddEntry(own, "a.desktop", "TryExec=missing\n");
    PutDefault("home/.config/mimeapps.list", "a.desktop;b.desktop");
    EXPECT_EQ("b.desktop", Id());
    AddEntry(own, "a.desktop", "TryExec=prog\n");
    EXPECT_EQ("a.desktop", Id());
}

TEST_F(MimeApplications, EntriesThatStartNothingAreNotThere) {
    for (char const* const lines :
         {"Type=Application\nExec=missing %U\n", "Type=Application\nExec=/nonexistent/prog\n",
          "Type=Application\nExec=\"prog\n", "Type=Application\n", "Type=Link\nURL=http://a/\nExec=prog\n",
          "Type=Directory\nExec=prog\n", "Exec=prog\n"}) {
        Write(std::string(kOwn) + "/gone.desktop", std::string("[Desktop Entry]\nName=G\n") + lines);
        PutDefault("home/.config/mimeapps.list", "gone.desktop;b.desktop");
        EXPECT_EQ("b.desktop", Id()) << lines;
    }
}

TEST_F(MimeApplications, DefaultsWhoseProgramsAreMissingArePassedOver) {
    Write(std::string(kOwn) + "/gone.desktop",
          "[Desktop Entry]\nType=Application\nName=G\nExec=missing %U\n");
    PutDefault("home/.config/mimeapps.list", "gone.desktop");
    PutDefault("xdg/mimeapps.list", "b.desktop");
    EXPECT_EQ("b.desktop", Id());
    EXPECT_EQ("b.desktop", Peer());
}

TEST_F(MimeApplications, FilesMayBeginWithAByteOrderMark) {
    Write(std::string(kOwn) + "/m.desktop",
          "\xEF\xBB\xBF[Desktop Entry]\nType=Application\nName=M\nExec=prog\n");
    Write("home/.config/mimeapps.list",
          std::string("\xEF\xBB\xBF[Default Applications]\n") + kType + "=m.desktop\n");
    EXPECT_EQ("m.desktop", Id());
    EXPECT_EQ("M", Handler().name);
}

TEST_F(MimeApplications, EntriesInFoldersHaveDashes) {
    AddEntry(own, "k/d-e/f.desktop");
    PutDefault("home/.config/mimeapps.list", "k-d-e-f.desktop");
    EXPECT_EQ("k-d-e-f.desktop", Id());
    EXPECT_EQ("k/d-e/f.desktop", Handler().name);
}

TEST_F(MimeApplications, IdsLeadNowhereElse) {
    AddEntry(own, "../x.desktop");
    AddEntry(own, "a/y.desktop");
    for (char const* const id :
         {"../x.desktop", "..-x.desktop", ".-a.desktop", "a/y.desktop", "-a.desktop", ".desktop", "a", ""}) {
        PutDefault("home/.config/mimeapps.list", id);
        EXPECT_EQ("", Id()) << id;
    }
}

TEST_F(MimeApplications, OtherTypesDoNotCount) {
    Write("home/.config/mimeapps.list",
          "[Default Applications]\nx-scheme-handler/mailtoo=a.desktop\nx-scheme-handler/mail=b.desktop\n"
          "[Other]\nx-scheme-handler/mailto=c.desktop\n");
    EXPECT_EQ("", Id());
}

TEST_F(MimeApplications, AssociationsCountWhereThereIsNoDefault) {
    Put("home/.config/mimeapps.list", "Added Associations", "gone.desktop;b.desktop;");
    EXPECT_EQ("b.desktop", Id());
    PutDefault("second/applications/mimeapps.list", "c.desktop");
    EXPECT_EQ("c.desktop", Id());
}

TEST_F(MimeApplications, RemovedAssociationsDoNotCountInFilesBehind) {
    Put("home/.config/mimeapps.list", "Removed Associations", "a.desktop;");
    Put("xdg/mimeapps.list", "Added Associations", "a.desktop;b.desktop;");
    EXPECT_EQ("b.desktop", Id());
    Write("home/.config/mimeapps.list", std::string("[Added Associations]\n") + kType +
                                            "=a.desktop\n[Removed Associations]\n" + kType + "=a.desktop\n");
    EXPECT_EQ("a.desktop", Id()) << "but in its own";
}

TEST_F(MimeApplications, ListsOfDefaultsCountBeforeTheCacheBesideThem) {
    Put("second/applications/mimeinfo.cache", "MIME Cache", "a.desktop;");
    PutDefault("second/applications/defaults.list", "b.desktop;a.desktop");
    EXPECT_EQ("b.desktop", Id());
    EXPECT_EQ("b.desktop", Peer());
    Put("first/applications/mimeinfo.cache", "MIME Cache", "c.desktop;");
    EXPECT_EQ("c.desktop", Id());
    EXPECT_EQ("c.desktop", Peer());
    PutDefault(std::string(kOwn) + "/defaults.list", "d.desktop");
    EXPECT_EQ("d.desktop", Id());
    EXPECT_EQ("d.desktop", Peer());
    PutDefault("xdg/defaults.list", "a.desktop");
    EXPECT_EQ("d.desktop", Id()) << "folders of settings have none";
    EXPECT_EQ("d.desktop", Peer());
    PutDefault("second/applications/mimeapps.list", "a.desktop");
    EXPECT_EQ("a.desktop", Id()) << "behind all lists of their newer name";
    EXPECT_EQ("a.desktop", Peer());
}

TEST_F(MimeApplications, CachesCountLast) {
    Put("first/applications/mimeinfo.cache", "MIME Cache", "b.desktop;a.desktop;");
    Put("second/applications/mimeinfo.cache", "MIME Cache", "c.desktop;");
    EXPECT_EQ("b.desktop", Id());
    EXPECT_EQ("b.desktop", Peer());
    Put(std::string(kOwn) + "/mimeinfo.cache", "MIME Cache", "d.desktop;");
    EXPECT_EQ("d.desktop", Id());
    EXPECT_EQ("d.desktop", Peer());
    Put("xdg/mimeinfo.cache", "MIME Cache", "a.desktop;");
    EXPECT_EQ("d.desktop", Id()) << "folders of settings have none";
    Put("home/.config/mimeapps.list", "Removed Associations", "d.desktop;");
    EXPECT_EQ("b.desktop", Id());
}
