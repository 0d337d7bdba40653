#include "host/quote_subscription.h"

#include <gtest/gtest.h>

#include "support/fake_host.h"

TEST(QuoteSubscription, SwitchesWithoutEverUnsubscribingTwice) {
    FakeHost host;
    {
        CQuoteSubscription sub;
        sub.bind(&host, 77);
        EXPECT_FALSE(sub.switchTo(tagSymbol{}));  // empty: nothing sent
        EXPECT_TRUE(sub.switchTo(tagSymbol{3, "IF2101"}));
        EXPECT_TRUE(sub.switchTo(tagSymbol{3, "IF2101"}));  // same: nothing sent
        EXPECT_TRUE(sub.switchTo(tagSymbol{0, "rb2105"}));
        sub.release();
        sub.release();
        EXPECT_FALSE(sub.held());
        EXPECT_TRUE(sub.switchTo(tagSymbol{2, "SR105"}));
    }  // destruction releases
    EXPECT_EQ(host.calls, (std::vector<std::string>{"Subscribe 77 IF2101", "Unsubscribe 77 IF2101",
                                                    "Subscribe 77 rb2105", "Unsubscribe 77 rb2105",
                                                    "Subscribe 77 SR105", "Unsubscribe 77 SR105"}));
}

TEST(QuoteSubscription, ARefusedSubscribeHoldsNothing) {
    struct Refusing : FakeHost {
        int QueryInterface(std::uint32_t, std::uint32_t, std::uint8_t, void*) override {
            calls.push_back("refused");
            return 0;
        }
    } host;
    CQuoteSubscription sub;
    sub.bind(&host, 5);
    EXPECT_FALSE(sub.switchTo(tagSymbol{3, "IF2101"}));
    EXPECT_FALSE(sub.held());
    sub.release();
    EXPECT_EQ(host.calls.size(), 1u);  // no unsubscribe for what was never held
}
