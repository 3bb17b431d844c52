#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string_view>

#include "explorer/page_world.h"
#include "platform/explorer/explorer_document.h"
#include "platform/explorer/page_pool.h"

namespace tamrin::test {

// Pages as the program has them.
class PageRig : public testing::Test {
protected:
    Document Open(std::string_view html, int mode = 11) {
        return Document(pool->Page(world.Open(html, mode)));
    }
    // The program has let go of the page: nobody may keep a reference.
    void TearDown() override {
        pool.reset();
        EXPECT_EQ(world.objects.alive.size(), 0U);
    }

    ComCalls calls;
    PageWorld world;
    std::shared_ptr<PagePool> pool = std::make_shared<PagePool>(calls);
};

}  // namespace tamrin::test
