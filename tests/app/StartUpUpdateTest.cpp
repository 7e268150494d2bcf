// The start-up update on its whole road: Form_Load, an update server, companions that are processes.
#include "app/FormFixture.h"
#include "update/Launcher.h"
#include "update/UpdateFixture.h"

namespace tavrel::app {
namespace {

class StartUpUpdate : public update::UpdateFixture {
  protected:
    void SetUp() override {
        Write("Tavrel", "the program");
        Publish("Sorvane_lastver.txt", {.body = "4"});
        Publish("Brixel.exe", {.body = "#!/bin/sh\ncd \"${0%/*}\"; echo \"$1\" >a; mv a replaced\n"});
    }

    /// Loads a window whose update is that of Program(); the checker published does what the script says.
    bool Form_Load(const std::string& checker) {
        Publish("Sorvane.exe", {.body = "#!/bin/sh\n" + checker});
        bool goesOn = true;
        Form1 form({.settings = settings, .messages = &messages, .runAutoUpdate = [&](auto&) {
                        modAutoUpdateV1_Launcher::RunAutoUpdate(false, Program(), messages,
                                                                [&] { goesOn = false; });
                        return goesOn;
                    }});
        const bool loaded = form.Form_Load();
        EXPECT_EQ(form.windowTitle().isEmpty(), !loaded);  // nothing of the start-up follows
        return loaded;
    }

    MemorySettings settings;
};

TEST_F(StartUpUpdate, EndsTheProgramWhenANewVersionWaits) {
    EXPECT_FALSE(Form_Load("echo new >New_Tavrel\n"));
    EXPECT_EQ(AwaitFile("replaced"), "Tavrel;New_Tavrel\n");
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(StartUpUpdate, LetsTheWindowComeWhenThereIsNone) {
    EXPECT_TRUE(Form_Load("echo \"$1\" >checked\n"));
    EXPECT_EQ(Read("checked"), "30;Tavrel\n");
    EXPECT_TRUE(messages.texts.empty());
}

}  // namespace
}  // namespace tavrel::app
