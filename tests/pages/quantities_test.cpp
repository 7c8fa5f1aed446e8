#include "quantities.hpp"

#include <gtest/gtest.h>

namespace {

struct Row {
    std::string value;
    std::string shown;
};

TEST(Quantities, BytesAreShownInTheLargestUnitOfWhichThereIsOne) {
    for (Row const& row :
         {Row{"0", "0 B"}, Row{"1023", "1023 B"}, Row{"1024", "1.0 KiB"}, Row{"1536", "1.5 KiB"},
          Row{"1048575", "1023.9 KiB"}, Row{"1048576", "1.0 MiB"}, Row{"25276514304", "23.5 GiB"},
          Row{"18446744073709551615", "15.9 EiB"}}) {
        EXPECT_EQ(Pages::Bytes(row.value), row.shown) << row.value;
    }
}

TEST(Quantities, DurationsAreDaysHoursAndWholeMinutes) {
    for (Row const& row :
         {Row{"0", "00:00"}, Row{"59", "00:00"}, Row{"60", "00:01"}, Row{"3599", "00:59"},
          Row{"86399", "23:59"}, Row{"86400", "1 d 00:00"}, Row{"93784", "1 d 02:03"}}) {
        EXPECT_EQ(Pages::Duration(row.value), row.shown) << row.value;
    }
}

TEST(Quantities, AnInterfaceIsUpOrDownOrInAStateThatIsNotKnown) {
    for (Row const& row :
         {Row{"up", "Up"}, Row{"down", "Down"}, Row{"lowerlayerdown", "Down"},
          Row{"unknown", "Not known"}, Row{"UP", "Not known"}, Row{"", "Not known"}}) {
        EXPECT_EQ(Pages::InterfaceState(row.value), row.shown) << row.value;
    }
}

TEST(Quantities, WhatIsUsedIsAPartOfWhatIsUsedOrToBeHadRoundedUp) {
    struct Use {
        std::string used;
        std::string available;
        std::optional<int> percent;
    };
    for (Use const& use :
         {Use{"0", "100", 0}, Use{"1", "1000", 1}, Use{"50", "50", 50}, Use{"501", "499", 51},
          Use{"100", "0", 100}, Use{"18446744073709551615", "18446744073709551615", 50},
          Use{"0", "0", std::nullopt}, Use{"Unavailable", "100", std::nullopt},
          Use{"100", "Unavailable", std::nullopt}}) {
        EXPECT_EQ(Pages::PercentUsed(use.used, use.available), use.percent)
            << use.used << ", " << use.available;
    }
}

TEST(Quantities, TextThatIsNoNumberComesBackAsItIs) {
    for (char const* const text :
         {"", "Unavailable", "-1", "1.5", " 1", "1 ", "18446744073709551616"}) {
        EXPECT_EQ(Pages::Bytes(text), text);
        EXPECT_EQ(Pages::Duration(text), text);
    }
}

}  // namespace
