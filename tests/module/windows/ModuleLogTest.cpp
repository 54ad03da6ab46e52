// The module's messages reach the logging library beside the program, which goes with the module.
#include "tests/Testing.h"
#include "tests/module/LoadedModule.h"
#include "tests/support/LogChild.h"

namespace {

TEST(ModuleLog, BindsOnTheFirstMessageAndLetsGoAtUnload) {
    const auto useAndUnload = [] {
        LoadedModule module;
        module.Load();
        QueryFor<IKxSceneDetect2>(module.MakeFilter().get(), IID_IKxSceneDetect2)
            ->EnableSceneListFile(L"\u65e5.xml");
        module.library.Close();
        std::fputs("unloaded", stderr);
    };
    EXPECT_CHILD_PRINTS(useAndUnload(),
                        StrEq("{loaded}{702/1 SceneDetectFilter:EnableSceneListFile: \xE6\x97\xA5.xml\n}"
                              "{released}unloaded"));
}

} // namespace
