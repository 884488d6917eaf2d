#include "platform/TestHook.h"

#include <gtest/gtest.h>

namespace orbex::platform {
namespace {

TEST(TestHook, ReplacementIsScopedAndNests) {
    const auto real = api().GetLastError;
    {
        testing::Replace<&Api::GetLastError> outer{[] { return Dword{42}; }};
        EXPECT_EQ(api().GetLastError(), 42u);
        {
            testing::Replace<&Api::GetLastError> inner{[] { return Dword{7}; }};
            EXPECT_EQ(api().GetLastError(), 7u);
        }
        EXPECT_EQ(api().GetLastError(), 42u);
    }
    EXPECT_EQ(api().GetLastError, real);
}

TEST(TestHook, RecorderCountsCallsAndForwardsThem) {
    testing::Replace<&Api::GetSystemMetrics> fake{[](std::int32_t index) { return index * 2; }};
    testing::Recorder recorder;
    EXPECT_EQ(api().GetSystemMetrics(21), 42);
    EXPECT_EQ(api().GetSystemMetrics(1), 2);
    EXPECT_EQ(recorder.count("GetSystemMetrics"), 2u);
    EXPECT_EQ(recorder.count("RegOpenKeyExA"), 0u);
}

TEST(TestHook, RealTableReachesWindows) {
    OsVersionInfoEx info{};
    info.dwOSVersionInfoSize = sizeof info;
    ASSERT_EQ(realApi().GetVersionExA(&info), 1);
    EXPECT_EQ(info.dwPlatformId, 2u);
}

}  // namespace
}  // namespace orbex::platform
