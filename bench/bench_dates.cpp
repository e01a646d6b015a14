// Dates next to std::chrono: day number to date and back, weekday of a date; and arrays of dates to their disk form.
//
// Both sides are called in the same way, through a pointer that the compiler cannot see through, as a program calls a
// library; or in line, one after the other. Dates are handed over by address: as a return value they would measure how
// the caller puts them back together.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <random>
#include <vector>

#include "datetime.h"
#include "scalararrays.h"
#include "vqbase.h"

namespace {

constexpr std::size_t Count = 10000;
constexpr std::int32_t Epoch = 2440588;  // the day number of 1970-01-01

// Days since 1970-01-01, over 800 years from 1570 on.
const std::vector<std::int32_t>& Days() {
    static const auto all = [] {
        std::mt19937 random(1);
        std::vector<std::int32_t> days(Count);
        for (std::int32_t& day : days) day = static_cast<std::int32_t>(random() % 292194) - 146097;
        return days;
    }();
    return all;
}

struct Ours {
    using Date = VqDate;
    static void FromDay(std::int32_t day, VqDate& out) { out.dateabs(day + Epoch); }
    static std::int32_t ToDay(const VqDate& date) { return static_cast<std::int32_t>(date.dayabs()) - Epoch; }
    static int Weekday(const VqDate& date) { return date.DayOfTheDate(); }
    static int Sum(const VqDate& date) { return date.year + date.month + date.day; }
    static VqDate Start() { return VqDate(0, 0, 0); }
};

struct Chrono {
    using Date = std::chrono::year_month_day;
    static void FromDay(std::int32_t day, Date& out) { out = std::chrono::sys_days(std::chrono::days(day)); }
    static std::int32_t ToDay(const Date& date) {
        return static_cast<std::int32_t>(std::chrono::sys_days(date).time_since_epoch().count());
    }
    static int Weekday(const Date& date) {
        return static_cast<int>(std::chrono::weekday(std::chrono::sys_days(date)).iso_encoding()) - 1;
    }
    static int Sum(const Date& date) {
        return int(date.year()) + static_cast<int>(unsigned(date.month()) + unsigned(date.day()));
    }
    static Date Start() { return {}; }
};

template <class Side>
std::vector<typename Side::Date> Dates() {
    std::vector<typename Side::Date> dates(Count, Side::Start());
    for (std::size_t i = 0; i < Count; ++i) Side::FromDay(Days()[i], dates[i]);
    return dates;
}

// What one operation does with the element at `i` of its input, as a number.
template <class Side>
struct FromDay {
    const std::vector<std::int32_t>& days = Days();
    typename Side::Date date = Side::Start();
    template <class Call>
    void Run(Call call, std::size_t i) {
        call(days[i], date);
        benchmark::DoNotOptimize(Side::Sum(date));
    }
    static constexpr auto operation = Side::FromDay;
};
template <class Side, auto Operation>
struct OfDates {
    std::vector<typename Side::Date> dates = Dates<Side>();
    template <class Call>
    void Run(Call call, std::size_t i) {
        auto number = call(dates[i]);
        benchmark::DoNotOptimize(number);
    }
    static constexpr auto operation = Operation;
};
template <class Side>
struct ToDay : OfDates<Side, Side::ToDay> {};
template <class Side>
struct Weekday : OfDates<Side, Side::Weekday> {};

template <class Case, bool InLine>
void Run(benchmark::State& state) {
    Case run;
    constexpr auto operation = Case::operation;
    auto* const volatile hidden = operation;
    auto* const called = hidden;
    for (auto _ : state) {
        for (std::size_t i = 0; i < Count; ++i) {
            if constexpr (InLine) {
                run.Run([](auto&&... arguments) { return Case::operation(arguments...); }, i);
            } else {
                run.Run(called, i);
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(Count));
}

bool SidesAgree() {
    const auto ours = Dates<Ours>();
    const auto theirs = Dates<Chrono>();
    for (std::size_t i = 0; i < Count; ++i) {
        if (ours[i].day != static_cast<int>(unsigned(theirs[i].day())) || Ours::ToDay(ours[i]) != Days()[i] ||
            Ours::Weekday(ours[i]) != Chrono::Weekday(theirs[i])) {
            return false;
        }
    }
    return true;
}

template <template <class> class Case>
void RegisterCase(const std::string& name) {
    benchmark::RegisterBenchmark((name + "/called/ours").c_str(), Run<Case<Ours>, false>);
    benchmark::RegisterBenchmark((name + "/called/peer_chrono").c_str(), Run<Case<Chrono>, false>);
    benchmark::RegisterBenchmark((name + "/in_line/ours").c_str(), Run<Case<Ours>, true>);
    benchmark::RegisterBenchmark((name + "/in_line/peer_chrono").c_str(), Run<Case<Chrono>, true>);
}

// --- Disk form

// `stored` bytes each, `count` times, next to a copy of as many.
void RunRow(benchmark::State& state, vqbench::ArrayOperation operation, unsigned char format, unsigned long count) {
    const std::vector<std::uint64_t> source = vqbench::RandomWords<std::uint64_t>(count);
    std::vector<std::uint64_t> target(count, 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(target.data(), source.data(), format, count));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

template <unsigned long Size>
[[gnu::noinline]] unsigned long Copy(void* dst, const void* src, unsigned char, unsigned long count) {
    std::memcpy(dst, src, count * Size);
    return count * Size;
}

void RegisterRow(const std::string& name, vqbench::ArrayOperation ours, vqbench::ArrayOperation peer) {
    for (const unsigned long count : {1ul, 1024ul}) {
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            const std::string full = name + (format == VqFormat_BigEndian ? "BE/" : "LE/") + std::to_string(count);
            benchmark::RegisterBenchmark((full + "/ours").c_str(), RunRow, ours, format, count);
            benchmark::RegisterBenchmark((full + "/peer_memcpy").c_str(), RunRow, peer, format, count);
        }
    }
}

const bool registered = [] {
    if (!SidesAgree()) throw "the sides compute other dates";
    RegisterCase<FromDay>("Dates/FromDay");
    RegisterCase<ToDay>("Dates/ToDay");
    RegisterCase<Weekday>("Dates/Weekday");
    RegisterRow("Dates/Store", DateStore, Copy<4>);
    RegisterRow("Dates/Load", DateLoad, Copy<4>);
    RegisterRow("DateTimes/Store", DaTimeStore, Copy<7>);
    RegisterRow("DateTimes/Load", DaTimeLoad, Copy<7>);
    return true;
}();

}  // namespace
