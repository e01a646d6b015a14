#include "vqconfig.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "replaced.h"

namespace {

constexpr int Default = -77;

bool Load(VqConfig& config, std::string_view text) {
    return config.LoadText(text.data(), static_cast<unsigned long>(text.size()), "test.ini");
}

std::string WriteFile(const char* name, const std::string& bytes) {
    const std::string path = testing::TempDir() + name;
    std::FILE* file = std::fopen(path.c_str(), "wb");
    EXPECT_TRUE(file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size());
    if (file) std::fclose(file);
    return path;
}

TEST(Config, ReadsWholeNumbers) {
    const struct {
        const char* text;
        int value;
    } cases[] = {
        {"1", 1},
        {" -17 \t", -17},
        {"+5", 5},
        {"010", 10},
        {"0x1F", 31},
        {"-0XfF", -255},
        {"2147483647", INT_MAX},
        {"-2147483648", INT_MIN},
        {"0x7FFFFFFF", INT_MAX},
        {"00000000000000000001", 1},
        {"\"12\"", 12},
        {"\" 12\"", Default},
        {"3 ; three", 3},
        {"3\t# three", 3},
        {"3;three", Default},
        {";3", Default},
        {"2147483648", Default},
        {"-2147483649", Default},
        {"0xFFFFFFFF", Default},
        {"18446744073709551617", Default},
        {"", Default},
        {"-", Default},
        {"--1", Default},
        {"0x", Default},
        {"0x-1", Default},
        {"1.5", Default},
        {"1 2", Default},
        {"yes", Default},
    };
    for (const auto& c : cases) {
        VqConfig config;
        EXPECT_TRUE(Load(config, std::string("[s]\nk = ") + c.text)) << config.ErrorText();
        EXPECT_EQ(config.GetInt("s", "k", Default), c.value) << c.text;
    }
}

TEST(Config, FindsSectionsAndKeys) {
    VqConfig config;
    EXPECT_TRUE(
        Load(config,
             "\xEF\xBB\xBF; comment\r\n\r\n  [ Debug ] ; comment\r\nstringOverflow=1\r\n\t#x = 5\r\n"
             "[other]\nkey with blanks = 2\nk = 3\n[DEBUG]\nSTRINGOVERFLOW = 4\nq=\"a;b=c\" # d\n[\xC3\xA4]\nk = 6"));
    EXPECT_STREQ(config.ErrorText(), "");
    EXPECT_EQ(config.GetInt("debug", "stringoverflow", Default), 4);
    EXPECT_EQ(config.GetInt("OTHER", "Key With Blanks", Default), 2);
    EXPECT_EQ(config.GetInt("other", "K", Default), 3);
    EXPECT_EQ(config.GetInt("\xC3\xA4", "k", Default), 6);
    EXPECT_EQ(config.GetInt("debug", "k", Default), Default);
    EXPECT_EQ(config.GetInt("debug", "x", Default), Default);
    EXPECT_EQ(config.GetInt(nullptr, nullptr, Default), Default);
    config.SetInt("Debug", "stringOverflow", INT_MIN);
    config.SetInt(nullptr, nullptr, 8);
    EXPECT_EQ(config.GetInt("debug", "stringoverflow", Default), INT_MIN);
    EXPECT_EQ(config.GetInt("", "", Default), 8);
}

TEST(Config, RefusesBadTextAndKeepsItsValues) {
    VqConfig config;
    EXPECT_EQ(config.GetInt("s", "k", Default), Default);
    ASSERT_TRUE(Load(config, "[s]\nk = 1"));
    const struct {
        std::string_view text;
        const char* error;
    } cases[] = {
        {"[s]\n\nk 2", "test.ini:3: neither a section nor a value; write [section] or key = value"},
        {"k = 2", "test.ini:1: value outside a section; write a line [section] before it"},
        {"[s]\n = 2", "test.ini:2: value without a key; write key = value"},
        {"[s\nk = 2", "test.ini:1: section without its end; write [section]"},
        {"[ ]", "test.ini:1: section without a name; write [section]"},
        {"[s] k = 2", "test.ini:1: text after a section; only a comment may follow [section]"},
        {"[s]\nk = \"2", "test.ini:2: quote without its end; write key = \"value\""},
        {"[s]\nk = \"2\" 3", "test.ini:2: text after a quote; only a comment may follow key = \"value\""},
        {{"[s]\nk = 2\0", 10}, "test.ini:2: control character; only text can be loaded"},
        {"; \x7F", "test.ini:1: control character; only text can be loaded"},
        {"[s]\rk = 2", "test.ini:1: control character; only text can be loaded"},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(Load(config, c.text));
        EXPECT_STREQ(config.ErrorText(), c.error);
        EXPECT_EQ(config.GetInt("s", "k", Default), 1) << c.error;
    }
    EXPECT_TRUE(config.LoadText(nullptr, 5, nullptr));
    EXPECT_STREQ(config.ErrorText(), "");
    EXPECT_EQ(config.GetInt("s", "k", Default), Default);
}

TEST(Config, LoadsFiles) {
    VqConfig config;
    const std::string good = WriteFile("vqbase_good.ini", "[s]\r\nk = 1\r\n");
    const std::string bad = WriteFile("vqbase_bad.ini", "[s]\r\noops\r\n");
    const std::string largest = WriteFile("vqbase_largest.ini", "[s]\nk = 2\n;" + std::string((1 << 20) - 11, 'x'));
    const std::string larger = WriteFile("vqbase_larger.ini", std::string((1 << 20) + 1, '\n'));
    EXPECT_TRUE(config.Load(good.c_str()));
    EXPECT_EQ(config.GetInt("s", "k", Default), 1);
    EXPECT_TRUE(config.Load(largest.c_str()));
    for (const std::string& path : {bad, larger, testing::TempDir() + "vqbase_missing.ini", testing::TempDir()}) {
        EXPECT_FALSE(config.Load(path.c_str()));
        EXPECT_TRUE(std::string_view(config.ErrorText()).starts_with(path + ":")) << config.ErrorText();
    }
    EXPECT_FALSE(config.Load(nullptr));
    EXPECT_EQ(config.GetInt("s", "k", Default), 2);
    for (const std::string& path : {good, bad, largest, larger}) std::remove(path.c_str());
}

TEST(Config, BecomesTheDefaultWhileItIsSet) {
    VqConfig config;
    const Replaced<VqConfig*> unset(VqSetDefaultConfig, nullptr);
    VqConfig* const before = DefaultConfig(-1);
    {
        const Replaced<VqConfig*> set(VqSetDefaultConfig, &config);
        EXPECT_EQ(set.Before(), nullptr);
        EXPECT_EQ(DefaultConfig(-1), &config);
        EXPECT_EQ(DefaultConfig(3), &config);
    }
    EXPECT_EQ(DefaultConfig(-1), before);
}

// Runs in a process of its own, since the environment is read once. Exit code: the number found, 99 without a default.
[[noreturn]] void ExitWithEnvironmentNumber(const std::string& path) {
#ifdef _WIN32
    _putenv_s("VQ_CONFIG", path.c_str());
#else
    setenv("VQ_CONFIG", path.c_str(), 1);
#endif
    const VqConfig* config = DefaultConfig(-1);
    std::exit(config && config == DefaultConfig(0) ? config->GetInt("s", "k", Default) : 99);
}

TEST(ConfigDeathTest, ComesFromTheEnvironment) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::string good = WriteFile("vqbase_environment.ini", "[s]\nk = 42\n");
    EXPECT_EXIT(ExitWithEnvironmentNumber(good), testing::ExitedWithCode(42), "");
    EXPECT_EXIT(ExitWithEnvironmentNumber(good + ".missing"), testing::ExitedWithCode(99),
                "VQ_CONFIG: .*cannot be read");
    EXPECT_EXIT(ExitWithEnvironmentNumber(""), testing::ExitedWithCode(99), testing::Eq(""));
    std::remove(good.c_str());
}

}  // namespace
