#include "base/program_module.h"

#include "base/durable_file.h"
#include "base/version.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;

class ProgramModuleTest : public testing::Test {
protected:
    void SetUp() override {
        set_module_folder(std::filesystem::path{NIVORA_BINARY_DIR} / "tests" / "modules");
    }
    void TearDown() override { set_module_folder({}); }

    /// The words with which a module is refused.
    static std::string refusal(const std::string& file, const char* function) {
        try {
            static_cast<void>(module_function(file, function, "is no answer"));
        } catch (const FileError& error) {
            return error.what();
        }
        return {};
    }
};

TEST_F(ProgramModuleTest, OneOfTheSameVersionIsLoaded) {
    using Answer = int (*)();
    const auto answer = reinterpret_cast<Answer>(module_function("own.so", "nivora_answer", "is no answer"));
    EXPECT_EQ(answer(), 42);
}

TEST_F(ProgramModuleTest, OneOfAnotherVersionIsRefused) {
    const std::string text = refusal("other.so", "nivora_answer");
    EXPECT_THAT(text, HasSubstr("The file 'other.so' can't be loaded, without which there is no answer"));
    EXPECT_THAT(text,
                HasSubstr("it is of version 0.9, and the program of version " + std::string{k_version}));
    EXPECT_THAT(text, HasSubstr("install the program again"));
}

TEST_F(ProgramModuleTest, OneWithoutAVersionIsRefused) {
    EXPECT_THAT(refusal("plain.so", "nivora_answer"), HasSubstr("it tells no version"));
}

TEST_F(ProgramModuleTest, WhatIsMissingIsNamed) {
    EXPECT_THAT(refusal("none.so", "nivora_answer"), HasSubstr("none.so"));
    EXPECT_THAT(refusal("own.so", "nivora_question"), HasSubstr("nivora_question"));
}

}  // namespace
}  // namespace nivora
