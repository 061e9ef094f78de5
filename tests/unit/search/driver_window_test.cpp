// The aspiration windows of a search, inferred from what it reports.

#include <string>

#include "gtest/gtest.h"
#include "support/driver_support.h"

namespace zar {
namespace {

using test::Driver;
using test::Event;
using test::events;

// The window as it should be, fed with what the search reports. A root search begins with its first
// root move; it fails when no score inside the window comes. The root list then holds the edge of
// the window that the last reported move met.
class WindowModel {
  public:
    void begin(int depth, Score listed, const std::string& where) {
        if (depth != depth_) {
            accept();
            depth_ = depth;
        } else if (failed_high_) {
            EXPECT_EQ(listed, beta_) << where;
            beta_ += delta_;
            widen();
        } else {
            EXPECT_EQ(listed, alpha_) << where;
            alpha_ -= delta_;
            widen();
        }
        if (depth < 5) {
            alpha_ = -30000;
            beta_ = 30000;
        }
        raised_ = alpha_;
        inside_ = false;
        failed_high_ = false;
    }

    void report(const RootResult& result, const std::string& where) {
        const bool repeated = inside_ && result.score == score_;
        if (!repeated) {
            Bound bound = kBoundExact;
            if (result.score <= raised_) {
                bound = kBoundUpper;
            } else if (result.score >= beta_) {
                bound = kBoundLower;
            }
            EXPECT_EQ(result.bound, bound)
                << where << " score " << result.score << " window " << raised_ << " " << beta_;
        }
        failed_high_ = result.bound == kBoundLower;
        if (result.bound == kBoundExact) {
            inside_ = true;
            score_ = result.score;
            raised_ = depth_ == 1 ? raised_ : result.score;
        }
    }

    int failures() const { return failures_; }

  private:
    void widen() {
        delta_ *= 2;
        ++failures_;
    }

    void accept() {
        alpha_ = score_ - delta_;
        beta_ = score_ + delta_;
    }

    int depth_ = 0;
    Score alpha_ = -30000;
    Score beta_ = 30000;
    Score delta_ = 16;
    Score raised_ = -30000;
    Score score_ = 0;
    bool inside_ = false;
    bool failed_high_ = false;
    int failures_ = 0;
};

TEST_F(Driver, TheAspirationWindowGrowsAtEveryMissAndNeverShrinks) {
    int failures = 0;
    // Positions whose score jumps several times on the way.
    for (const char* const fen :
         {"1K1k4/1P6/8/8/8/8/r7/2R5 w - - 0 60", "8/8/8/8/5kp1/P7/8/1K1N4 w - - 0 1",
          "8/8/1p1k4/1P6/2K5/8/6p1/6B1 w - - 0 1", "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1"}) {
        hash_clear(hash_table);
        search(fen, 9);
        WindowModel model;
        for (const Event& event : events) {
            const std::string where = std::string(fen) + " depth " + std::to_string(event.depth);
            if (event.is_report) {
                model.report(event.result, where);
            } else if (event.root_index == 0) {
                model.begin(event.depth, event.listed, where);
            }
        }
        failures += model.failures();
        EXPECT_LT(search_thread(0).result[0].score, 20000) << fen;
    }
    EXPECT_GE(failures, 10);
}

}  // namespace
}  // namespace zar
