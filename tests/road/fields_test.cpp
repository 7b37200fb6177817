// Every byte of a settings record that means something is told in JSON.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/record_json.h"
#include "tests/support/settings.h"

namespace kestrel {
namespace {

// Reserved bytes, first to last: three words of the free-size paper, one and four of the driver's.
constexpr struct { size_t first, last; } kReserved[] = {{374, 379}, {404, 405}, {440, 447}};

TEST(RecordFields, AreAllInTheJson) {
  const auto machine = platform::Machine::Create();
  auto block = support::DefaultBlock();
  // Names that fill their fields, so that each of their units shows.
  std::fill_n(block.Record.Public.dmDeviceName, 32, u'n');
  std::fill_n(block.Record.Public.dmFormName, 32, u'n');
  std::fill_n(block.Record.Private.FreePaper.PaperName, kPaperNameLength, u'n');
  const printhost::Record record = support::BytesOf(block.Record);
  const printhost::Json before = printhost::RecordJson(record);
  for (size_t at = 0; at < record.size(); ++at) {
    if (at >= 68 && at < 72) continue;  // a record of another size is another record
    printhost::Record other = record;
    other[at] ^= std::byte{1};
    const bool reserved = std::ranges::any_of(
        kReserved, [=](const auto& range) { return at >= range.first && at <= range.last; });
    EXPECT_EQ(printhost::RecordJson(other) == before, reserved) << "byte " << at;
  }
}

}  // namespace
}  // namespace kestrel
