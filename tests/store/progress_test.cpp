// What the progress line says.
#include <gtest/gtest.h>

#include "../../tools/vqtype/store/progress.h"

namespace store {

TEST(Progress, TextHasWhatIsKnownAndFits) {
    struct Case {
        Progressed progressed;
        std::size_t width;
        const char* text;
    };
    const Case cases[] = {
        {{}, 79, "loading  0 rows"},
        {{1040000, 52, 100, 2}, 79, "loading [==========>         ]  52 %  1,040,000 rows, 520,000 a second"},
        {{999, 0, 7, 1}, 79, "loading [>                   ]   0 %  999 rows, 999 a second"},
        {{1000, 9, 7, 0}, 79, "loading [====================] 100 %  1,000 rows"},
        {{123456, 0, 0, 0.5}, 24, "loading  123,456 rows, 2"},
    };
    for (const Case& c : cases) EXPECT_EQ(c.text, ProgressText("loading", c.progressed, c.width));
}

}  // namespace store
