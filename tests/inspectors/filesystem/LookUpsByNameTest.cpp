#include <sys/stat.h>

#include "Asking.h"

using LookUpsByName = FileSystem;

TEST_F(LookUpsByName, FindFilesFoldersAndItems) {
    here.Write("file");
    here.MakeFolder("folder");
    EXPECT_EQ(here.Path("file"), Path(FileNamed("file", Here())));
    EXPECT_EQ(here.Path("folder"), Path(FolderNamed("folder", Here())));
    EXPECT_EQ(here.Path("file"), Path(ItemNamed("file", Here())));
    EXPECT_EQ(here.Path("folder"), Path(ItemNamed("folder", Here())));
}

TEST_F(LookUpsByName, FolderIsNoFileAndFileNoFolder) {
    here.Write("file");
    here.MakeFolder("folder");
    EXPECT_THROW(FileNamed("folder", Here()), NoSuchObject);
    EXPECT_THROW(FolderNamed("file", Here()), NoSuchObject);
}

TEST_F(LookUpsByName, MissingFileOrFolderIsNoSuchObjectButMissingItemIsAFailure) {
    EXPECT_THROW(FileNamed("missing", Here()), NoSuchObject);
    EXPECT_THROW(FolderNamed("missing", Here()), NoSuchObject);
    EXPECT_THROW(ItemNamed("missing", Here()), FailedToGetFileItem);
}

TEST_F(LookUpsByName, NameThatNoFileHasIsNoSuchObject) {
    std::string const names[] = {"", ".", "..", "a/b", std::string("a\0b", 3), std::string(256, 'x')};
    for (std::string const& name : names) {
        EXPECT_THROW(FileNamed(name, Here()), NoSuchObject) << name;
        EXPECT_THROW(FolderNamed(name, Here()), NoSuchObject) << name;
        EXPECT_THROW(ItemNamed(name, Here()), NoSuchObject) << name;
    }
}

TEST_F(LookUpsByName, InNoFolderIsNoSuchObjectButForFiles) {
    EXPECT_THROW(FileNamed("a", folder()), DirectoryNotFoundError);
    EXPECT_THROW(FolderNamed("a", folder()), NoSuchObject);
    EXPECT_THROW(ItemNamed("a", folder()), NoSuchObject);
}

TEST_F(LookUpsByName, TakeAnyBytes) {
    std::string const longest(255, 'x');
    for (std::string const& name : {std::string("caf\xC3\xA9"), std::string("\xFF\xFE"), std::string("a:b"),
                                    std::string(" "), std::string("~"), longest}) {
        here.Write(name);
        EXPECT_EQ(here.Path(name), Path(FileNamed(name, Here())));
    }
}

TEST_F(LookUpsByName, MindTheCase) {
    here.Write("Foo");
    EXPECT_EQ(here.Path("Foo"), Path(FileNamed("Foo", Here())));
    EXPECT_THROW(FileNamed("foo", Here()), NoSuchObject);
}

TEST_F(LookUpsByName, FollowLinks) {
    here.MakeFolder("folder");
    here.Write("file", "12345");
    here.Link("to folder", "folder");
    here.Link("to file", "file");
    here.Link("to nothing", "missing");
    EXPECT_EQ(here.Path("to folder"), Path(FolderNamed("to folder", Here())));
    EXPECT_EQ(5u, +FileNamed("to file", Here()).info.catalog.dataLogicalSize);
    EXPECT_EQ(kIsAlias, FileNamed("to nothing", Here()).info.FinderFlags());
}

TEST_F(LookUpsByName, InAFolderThatHasGoneFindNothing) {
    here.MakeFolder("gone");
    folder const gone = FolderAt(here.Path("gone"));
    std::filesystem::remove(here.Path("gone"));
    EXPECT_THROW(FileNamed("file", gone), NoSuchObject);
    EXPECT_THROW(ItemNamed("file", gone), FailedToGetFileItem);
}

TEST_F(LookUpsByName, OfSiblingsStartAtTheParent) {
    here.Write("one");
    here.Write("two");
    here.MakeFolder("folder");
    file const one = FileAt(here.Path("one"));
    EXPECT_EQ(here.Path("two"), Path(sibling_file_of(Bytes("two"), 3, one)));
    EXPECT_EQ(here.Path("folder"), Path(sibling_folder_of(Bytes("folder"), 6, one)));
    EXPECT_EQ(here.Path("two"), Path(sibling_object_of(Bytes("two"), 3, one)));
    EXPECT_THROW(sibling_file_of(Bytes("folder"), 6, one), NoSuchObject);
    EXPECT_THROW(sibling_object_of(Bytes("missing"), 7, one), FailedToGetFileItem);
}

TEST_F(LookUpsByName, OfSiblingsOfTheRootFail) {
    EXPECT_THROW(sibling_file_of(Bytes("etc"), 3, FolderAt("/")), FailedToGetFileItem);
    EXPECT_THROW(sibling_folder_of(Bytes("etc"), 3, FolderAt("/")), FailedToGetFileItem);
    EXPECT_THROW(sibling_object_of(Bytes("etc"), 3, FolderAt("/")), FailedToGetFileItem);
}
