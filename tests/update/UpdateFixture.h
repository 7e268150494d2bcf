// A program's folder with companions, an update server, and what the user is told.
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Dialogs.h"
#include "support/LoopbackServer.h"
#include "support/PeFiles.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"
#include "update/RunningProgram.h"

namespace tavrel::update {

/// Boxes as one line each: the icon's number (16 for the critical one), a blank, the text.
struct HeardMessages : platform::MessageBox {
    std::vector<std::string> texts;
    platform::MessageAnswer Show(const platform::Message& message) override {
        EXPECT_EQ(message.buttons, platform::MessageButtons::Ok);
        EXPECT_EQ(message.title, "Tavrel");
        texts.push_back((message.icon == platform::MessageIcon::Critical ? "16 " : "0 ") + message.text);
        return platform::MessageAnswer::Ok;
    }
};

class UpdateFixture : public ::testing::Test {
  protected:
    [[nodiscard]] RunningProgram Program(const std::string& folder) const {
        return {.updateHost = server.Host(), .folder = folder, .baseName = "Tavrel", .revision = "30"};
    }
    [[nodiscard]] RunningProgram Program() const { return Program(folder.Path()); }

    /// What the update server holds under the name.
    void Publish(const std::string& name, tavrel::testing::HttpReply reply) {
        server.Answer(kBase + name, std::move(reply));
    }
    /// The first lines of what has been asked for, by the names below the update service's path.
    std::vector<std::string> AskedFor() {
        std::vector<std::string> names;
        for (const std::string& head : server.TakeRequests()) {
            const std::string start = "GET " + kBase;
            EXPECT_EQ(head.substr(0, start.size()), start);
            names.push_back(head.substr(start.size(), head.find(' ', start.size()) - start.size()));
        }
        return names;
    }

    void Write(const std::string& name, const std::string& text) const {
        std::ofstream(folder.File(name), std::ios::binary) << text;
    }
    [[nodiscard]] std::string Read(const std::string& name) const {
        std::ifstream file(folder.File(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    /// A companion: a real program.  It does the lines of the script, which tests/companion knows; where
    /// there is a shell it is a script of that.
    void WriteProgram(const std::string& name, const std::string& script) const {
#ifdef _WIN32
        Write(name + ".script", script);
        std::filesystem::copy_file(tavrel::testing::ProgramFolder() + "/tavrel-test-companion.exe",
                                   folder.File(name), std::filesystem::copy_options::overwrite_existing);
#else
        Write(name, std::string("#!/bin/sh\n") + kShellWords + script);
        std::filesystem::permissions(folder.File(name), std::filesystem::perms::owner_all);
#endif
    }
    /// What a program that nobody waits for has written; empty when it has not within seconds.
    [[nodiscard]] std::string AwaitFile(const std::string& name) const {
        for (int i = 0; i < 500 && !std::filesystem::exists(folder.File(name)); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return Read(name);
    }
    [[nodiscard]] std::vector<std::string> FilesThere() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    /// What the companion's verbs are to a shell.
    static constexpr const char* kShellWords =
        "n=$#; a=$1\n"
        "wait() { /bin/sleep 0.2; }\n"
        "home() { cd \"${0%/*}\"; }\n"
        "write() {\n"
        "  printf '%s' \"$2\" | /bin/sed \"s|%n|$n|;s|%1|$a|;s|%d|$PWD|\" >\"$1.part\"; /bin/mv \"$1.part\" "
        "\"$1\"\n"
        "}\n";

    const std::string kBase = "/download/%EC%9E%90%EB%8F%99%EC%97%85%EB%8D%B0%EC%9D%B4%ED%8A%B8_v1/";
    tavrel::testing::LoopbackServer server;
    tavrel::testing::TemporaryFolder folder;
    HeardMessages messages;
};

}  // namespace tavrel::update
