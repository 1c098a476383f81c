// What the command says where the bundles of components cannot be read.

#include <sys/stat.h>

#include "faults/Asking.h"
#include "support/TemporaryFolder.h"
#include "support/Variable.h"

namespace {

class ComponentBundles : public testing::Test {
  protected:
    ComponentBundles() {
        here.MakeFolder("etc/zelq");
        here.Write("etc/zelq/folders.conf",
                   "[cmpd]\nuser =\nlocal =\nnetwork =\nsystem = " + here.MakeFolder("components") + "\n");
        Install("One.component", kList);
    }
    void Install(std::string const& bundle, std::string const& list) const {
        here.MakeFolder("components/" + bundle + "/Contents");
        here.Write("components/" + bundle + "/Contents/Info.plist", list);
    }
    // What is said behind "no such object" while an item may not be read.
    std::string HintWithout(std::string const& locked) const {
        EXPECT_EQ(0, chmod(here.Path(locked).c_str(), 0));
        Ran const ran = RunUnprivileged("name of component");
        EXPECT_EQ(0, chmod(here.Path(locked).c_str(), 0700));
        ExpectNoSuchObject(ran);
        std::size_t const at = ran.err.find("  hint: ");
        return at == ran.err.npos ? "" : ran.err.substr(at + 8);
    }

    static constexpr char kList[] =
        "{AudioComponents = ({type = aufx; subtype = lowp; manufacturer = Acme; name = One;});}";
    TemporaryFolder const here;
    Variable const machine{"ZELQ_MACHINE_ROOT", here.Path()};
};

}  // namespace

TEST_F(ComponentBundles, ThatMayNotBeReadAreToldOfWhereNoComponentIsLeft) {
    ExpectAnswer("One\n", RunUnprivileged("name of component"));
    for (std::string const item :
         {"components", "components/One.component", "components/One.component/Contents",
          "components/One.component/Contents/Info.plist"})
        EXPECT_EQ("the file \"" + here.Path(item) + "\" may not be read\n", HintWithout(item));
}

TEST_F(ComponentBundles, AboveWhichNothingMayBeReadAreToldOf) {
    std::string const folder = here.MakeFolder("locked/components");
    here.Write("etc/zelq/folders.conf", "[cmpd]\nuser =\nlocal =\nnetwork =\nsystem = " + folder + "\n");
    EXPECT_EQ("the file \"" + folder + "\" may not be read\n", HintWithout("locked"));
}

TEST_F(ComponentBundles, OfSpoiltListsAreToldOf) {
    Install("One.component", "<plist");
    Ran const ran = RunZelq({"name of component"});
    ExpectNoSuchObject(ran);
    EXPECT_NE(std::string::npos,
              ran.err.find("hint: the file \"" + here.Path("components/One.component/Contents/Info.plist") +
                           "\" is no property list: "))
        << ran.err;
}

TEST_F(ComponentBundles, ThatMayNotBeReadDoNotExplainWhatOthersLack) {
    Install("Two.component", "<plist");
    Install("One.component", "{AudioComponents = ({type = aufx; subtype = lowp; manufacturer = Acme;});}");
    Ran const ran = RunZelq({"name of first value of components"});
    ExpectNoSuchObject(ran);
    EXPECT_EQ(std::string::npos, ran.err.find("hint")) << ran.err;
    ExpectAnswer("", RunZelq({"names of components"}));
}
