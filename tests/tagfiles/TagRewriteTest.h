#pragma once
// What the tests of operations that rewrite tagged files share: a folder that is the current
// one while a test runs, and a rewrite run with each call of the kit's
// file layer failing (or the user aborting) in turn.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "FileOs.h"
#include "MProgressManager.h"
#include "MStatusCallbackToMProgressImpl.h"
#include "TempFolder.h"
#include "TestingUtility.h"

// Whether the capture holds the text.
inline bool Logged(const TestingUtility& log, const std::wstring& text) {
    const std::vector<std::wstring> texts = log.GetTexts();
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// Rewrites name their files relative to the test's folder, the current one while it runs:
// MFileName takes a path in Windows form, which a native absolute path is not.
class TagRewriteTest : public TempFolderTest {
protected:
    void SetUp() override {
        TempFolderTest::SetUp();
        m_previous = std::filesystem::current_path();
        std::filesystem::current_path(m_folder);
    }
    void TearDown() override {
        std::filesystem::current_path(m_previous);
        TempFolderTest::TearDown();
    }

    // What a call of the file layer runs into.
    enum class Injected {
        Failure, // the call fails as the system's would
        Abort,   // the user presses abort just before it (the progress manager's flag)
    };

    // Runs `rewrite` of the file `name` (which holds `original` before each run) once for each
    // call it makes of the kit's file layer, with that call running into `injected`. After each
    // run the file holds `result` when the rewrite returned true and `original` when it
    // returned false; nothing else is left in the folder but, when only the deletion of the
    // moved-aside original failed, that original as "<name>.~<kind>1". Returns how many runs
    // failed.
    int RunIntoEachCall(Injected injected, const std::wstring& name, const std::string& original,
                        const std::string& result, const std::wstring& kind,
                        const std::function<bool()>& rewrite) {
        long long calls = 0, at = -1;
        std::vector<FileOs::Call> kinds;
        // Put back on every way out: the probe refers to this frame.
        struct ProbeRestore {
            FileOs::Probe previous;
            ~ProbeRestore() { FileOs::SetProbe(previous); }
        };
        const ProbeRestore restore{FileOs::SetProbe([&](FileOs::Call call, size_t) {
            kinds.push_back(call);
            if (calls++ != at)
                return true;
            if (injected == Injected::Failure)
                return false;
            MProgressManager::SetAbortFlag(true);
            return true;
        })};
        // The status listener, through which the rewrite sees the abort flag.
        MStatusCallbackToMProgressImpl listener(true);
        MProgressManager::ResetAbortFlag();
        WriteRaw(name, original);
        EXPECT_TRUE(rewrite()) << "without anything injected";
        const long long total = calls;
        int failed = 0;
        for (at = 0; at < total; ++at) {
            SCOPED_TRACE("call " + std::to_string(at) + " of " + std::to_string(total));
            WriteRaw(name, original);
            calls = 0;
            kinds.clear();
            MProgressManager::ResetAbortFlag();
            const bool done = rewrite();
            failed += !done;
            if (static_cast<size_t>(at) >= kinds.size()) {
                ADD_FAILURE() << "this run made only " << kinds.size() << " calls";
                continue;
            }
            const FileOs::Call call = kinds[static_cast<size_t>(at)];
            EXPECT_EQ(done ? result : original, ReadRaw(name))
                << "call kind " << static_cast<int>(call);
            std::vector<std::wstring> left;
            for (const auto& entry : std::filesystem::directory_iterator(m_folder))
                left.push_back(entry.path().filename().wstring());
            std::sort(left.begin(), left.end());
            const std::wstring aside = name + L".~" + kind + L"1";
            if (injected == Injected::Failure && call == FileOs::Call::Remove) {
                EXPECT_TRUE(done);
                EXPECT_EQ((std::vector<std::wstring>{name, aside}), left);
                EXPECT_EQ(original, ReadRaw(aside));
                std::filesystem::remove(m_folder / aside);
            } else
                EXPECT_EQ(std::vector<std::wstring>{name}, left);
        }
        MProgressManager::ResetAbortFlag();
        return failed;
    }

    std::filesystem::path m_previous;
};
