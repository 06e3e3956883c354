#include "session/document_reasons.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace nivora {
namespace {

TEST(DocumentReasons, EachResultHasItsText) {
    const std::map<int, std::string> words{{2, "File not found"},
                                           {3, "Path not found"},
                                           {5, "Access denied"},
                                           {8, "Out of memory"},
                                           {11, "Invalid EXE file or error in EXE image"},
                                           {26, "A sharing violation occurred"},
                                           {27, "Incomplete or invalid file association"},
                                           {28, "DDE Time out"},
                                           {29, "DDE transaction failed"},
                                           {30, "DDE busy"},
                                           {31, "No association for file extension"},
                                           {32, "DLL not found"}};
    for (int code = 0; code < 40; ++code) {
        const auto known = words.find(code);
        EXPECT_EQ(std::string{errmsg(code)}, known == words.end() ? "Unknown error" : known->second) << code;
    }
}

}  // namespace
}  // namespace nivora
