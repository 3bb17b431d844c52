#include "chromium/chromium_fixture.h"

std::unique_ptr<tamrin::conformance::BackEnd> tamrin::conformance::MakeBackEnd() {
    return std::make_unique<test::Rig>();
}
