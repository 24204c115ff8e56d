// Whole frames with status bytes: a call this large computes one preset's status from the runs
// of its table, whatever their number and marks, and must store exactly what the table holds.
#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "kernel_calls.h"
#include "lut_bounds.h"
#include "reference_rules.h"
#include "status_runs.h"

namespace vz::testing {
namespace {

using Marks = std::vector<unsigned char>;

// Runs of the given marks, each beginning at its start; starts[0] is 0.
Marks RunsTable(const std::vector<std::uint32_t>& starts, const Marks& marks) {
    Marks table(kLutSize);
    for (std::size_t r = 0; r < starts.size(); ++r) {
        const std::uint32_t end = r + 1 < starts.size() ? starts[r + 1] : kLutSize;
        for (std::uint32_t i = starts[r]; i < end; ++i) {
            table[i] = marks[r];
        }
    }
    return table;
}

// The status a bounded table of a rising LUT gets: five runs.
Marks BoundedTable() {
    std::vector<float> lut(kLutSize);
    for (std::uint32_t i = 0; i < kLutSize; ++i) {
        lut[i] = static_cast<float>(i) * 0.01f - 100.0f;
    }
    Marks table(kLutSize);
    BoundLut(lut.data(), table.data(), {20000, 40000, 150.0f, 250.0f}, eCelsius, 0xFFFFFFFFu);
    return table;
}

struct TableCase {
    std::string name;
    Marks table;
};

std::vector<TableCase> TableCases() {
    return {
        {"Bounded", BoundedTable()},
        {"OneRun", RunsTable({0}, {eLUTOutside})},
        // Five runs, the first and last one entry long, marks in no order.
        {"FiveUnordered", RunsTable({0, 1, 300, 65000, 65535}, {7, 0, 255, 4, 1})},
        {"LastEntryAlone", RunsTable({0, 65535}, {eLUTValid, eLUTAbove})},
        // One run more than the kernels compute, and many more: the table is read entry by entry.
        {"SixRuns", RunsTable({0, 10, 20, 30, 40, 65534}, {1, 2, 1, 2, 1, 9})},
        {"EveryEntryItsOwn",
         [] {
             Marks table(kLutSize);
             for (std::uint32_t i = 0; i < kLutSize; ++i) {
                 table[i] = static_cast<unsigned char>(i * 7 + i / 256);
             }
             return table;
         }()},
    };
}

// The scan finds the runs of every table that has at most five, so that whole frames of a
// bounded table never fall back to loading their status bytes.
TEST(StatusRuns, DescribeEveryTableOfUpToFiveRuns) {
    for (const TableCase& table : TableCases()) {
        SCOPED_TRACE(table.name);
        std::size_t runCount = 1;
        for (std::uint32_t i = 1; i < kLutSize; ++i) {
            runCount += table.table[i] != table.table[i - 1];
        }
        typed::StatusRuns runs;
        ASSERT_EQ(typed::FindStatusRuns(table.table.data(), runs), runCount <= 5);
        if (runCount > 5) {
            continue;
        }
        EXPECT_EQ(runs.starts[0], 0);
        for (std::uint32_t i = 0; i < kLutSize; ++i) {
            std::size_t r = 0;
            for (std::size_t later = 1; later < typed::StatusRuns::kCount; ++later) {
                r += static_cast<std::int64_t>(i) >= runs.starts[later];
            }
            ASSERT_EQ(runs.marks[r], table.table[i]) << "count " << i;
        }
    }
}

// Every index at least once, in an order that puts neighbours in different lanes, then values
// beyond the type's clamp bounds where it has them, and a remainder after the last group.
template <class In> std::vector<In> FrameInputs() {
    std::vector<In> in;
    const std::uint32_t top = std::numeric_limits<In>::max() < 65535
                                  ? static_cast<std::uint32_t>(std::numeric_limits<In>::max())
                                  : 65535;
    while (in.size() < 2 * kLutSize) {
        for (std::uint32_t i = 0; i <= top; ++i) {
            in.push_back(static_cast<In>((i * 40503u) % (top + 1)));
        }
    }
    in.push_back(std::numeric_limits<In>::lowest());
    in.push_back(std::numeric_limits<In>::max());
    if constexpr (!std::is_floating_point_v<In> && sizeof(In) >= 4) {
        in.push_back(static_cast<In>(70000));
    }
    while (in.size() % 16 != 5) {
        in.push_back(static_cast<In>(in.size() % 3));
    }
    return in;
}

template <class In> class StatusRunsTest : public ::testing::Test {};

using InputTypes = ::testing::Types<std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                    std::uint64_t, float, double>;
TYPED_TEST_SUITE(StatusRunsTest, InputTypes);

TYPED_TEST(StatusRunsTest, StoresWhatTheTableHolds) {
    using In = TypeParam;
    ApiUInt32 inCode = 0;
    for (ApiUInt32 code = 0; code < std::tuple_size_v<CodedTypes>; ++code) {
        WithElementType(code, [&](auto element) {
            if constexpr (std::is_same_v<decltype(element), In>) {
                inCode = code;
            }
        });
    }
    std::vector<In> in = FrameInputs<In>();
    const auto n = static_cast<ApiUInt32>(in.size());
    MemoryEngine engine;
    const Routing routing = UniformRouting(1);
    for (std::uint32_t i = 0; i < kLutSize; ++i) {
        engine.values[1][i] = static_cast<float>(i) / 8 - 40.0f;
    }
    for (const TableCase& table : TableCases()) {
        engine.status[1] = table.table;
        for (ETempType type : {eCelsius, eFahrenheit}) {
            SCOPED_TRACE(table.name + " to unit " + std::to_string(type));
            std::vector<float> out(n);
            Marks status(n + 1, 0xA5);
            ASSERT_TRUE(Convert(engine, routing, {in.data(), inCode}, {out.data(), Float}, n,
                                status.data(), type));
            std::size_t wrong = 0;
            for (ApiUInt32 k = 0; k < n; ++k) {
                const std::uint16_t i = ReferenceIndex(in[k]);
                const float expected = ReferenceConvert(engine.values[1][i], eCelsius, type);
                if (status[k] != table.table[i] || Bits(out[k]) != Bits(expected)) {
                    ADD_FAILURE_AT(__FILE__, __LINE__) << "pixel " << k << ", count " << i;
                    ASSERT_LT(++wrong, 5u);
                }
            }
            EXPECT_EQ(status[n], 0xA5);
        }
    }
}

} // namespace
} // namespace vz::testing
