#include <gtest/gtest.h>
#include <windows.h>

#include <ole2.h>

namespace tamrin::test {
namespace {

// The thread of the tests is an apartment, as that of the program is.
class Apartment : public testing::Environment {
public:
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr))); }
    void TearDown() override { OleUninitialize(); }
};

const auto* const apartment = testing::AddGlobalTestEnvironment(new Apartment);

}  // namespace
}  // namespace tamrin::test
