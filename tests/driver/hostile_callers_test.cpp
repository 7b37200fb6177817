// Callers whose records change while the module reads them or state wrong sizes, and printers that
// change between two calls of the spooler.
#include <atomic>
#include <thread>

#include "driver/record_view.h"
#include "driver/resolve_settings.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/test_machine.h"

namespace kestrel {
namespace {

using platform::Fault;
using support::At;
using support::kPrinter;
using support::Put;

class HostileCallers : public support::MachineTest {
 protected:
  HostileCallers() {
    block_.Printer.PaperNum = 5;
    support::StoreBlock(machine(), block_);
    std::memset(bytes_, 0x5A, sizeof bytes_);
    std::memcpy(bytes_, &block_.Record, sizeof block_.Record);
  }
  DWORD CountPapers(void* record = nullptr) {
    return exports_.DrvDeviceCapabilities(printer_, name_.data(), DC_PAPERS, nullptr,
                                          static_cast<DEVMODEW*>(record));
  }
  void Convert(void* input, void* output) {
    LONG size = 452;
    EXPECT_TRUE(exports_.DrvConvertDevMode(name_.data(), static_cast<DEVMODEW*>(input),
                                           static_cast<DEVMODEW*>(output), &size, CDM_CONVERT));
    EXPECT_EQ(size, 452);
  }

  const support::OpenedPrinter printer_;
  std::u16string name_ = kPrinter;
  DriverSettingsBlock block_ = support::DefaultBlock();
  alignas(4) BYTE bytes_[452];
};

// A query makes three calls: for the size and the content of the printer's information, and for its
// data.
TEST_F(HostileCallers, PrinterThatChangesMeanwhileIsQueriedAgain) {
  const std::pair<int, int> kCalls[] = {
      {1, 3}, {2, 4}, {3, 3}, {4, 3}};  // the call before which the printer changes, calls in all
  for (const auto& [n, calls] : kCalls) {
    machine().faults.FailNth(Fault::kSpoolerChange, n);
    EXPECT_EQ(CountPapers(), 6u) << n;
    EXPECT_EQ(machine().faults.Calls(Fault::kSpoolerChange), calls) << n;
  }
  machine().faults.FailFrom(Fault::kSpoolerChange, 1);
  EXPECT_EQ(CountPapers(), 2u) << "the defaults when the printer changes before every call";
}

// The caller's memory ends after 452 bytes, whatever sizes its record states.
TEST_F(HostileCallers, RecordOfOtherSizesIsReadWithinItsFirst452Bytes) {
  const std::pair<WORD, WORD> kSizes[] = {{220, 352},   {220, 65535}, {452, 232}, {65535, 65535},
                                          {65535, 232}, {219, 65535}, {76, 65535}};
  for (const auto& [size, extra] : kSizes) {
    SCOPED_TRACE(testing::Message() << size << '+' << extra);
    Put(bytes_, 68, size);
    Put(bytes_, 70, extra);
    const support::GuardedBuffer input(bytes_, sizeof bytes_), output(452);
    EXPECT_EQ(CountPapers(input.data()), 6u);
    EXPECT_FALSE(exports_.DrvQueryJobAttributes(printer_, input.As<DEVMODEW>(), 3, nullptr));
    Convert(input.data(), output.data());
    EXPECT_EQ(At<WORD>(output.data(), 68), std::min<WORD>(size, 220));
    EXPECT_EQ(At<WORD>(output.data(), 70), 232);
  }
}

TEST_F(HostileCallers, SizesThatChangeLaterAreNotReadAgain) {
  Put(bytes_, 68, WORD{76});
  Put(bytes_, 70, WORD{0});
  const RecordView view(bytes_);
  Put(bytes_, 68, WORD{219});
  Put(bytes_, 70, WORD{300});
  support::GuardedBuffer output(76);
  ASSERT_TRUE(ResolveSettings(output.data(), view, printer_, kPrinter, DM_COPY | DM_IN_BUFFER));
  EXPECT_EQ(At<WORD>(output.data(), 68), 76);
  EXPECT_EQ(At<WORD>(output.data(), 70), 0);
}

// Another thread of the caller changes the sizes continuously. An output contains as many bytes as
// its sizes state, and the rest of its 452 bytes is cleared.
TEST_F(HostileCallers, SizesThatChangeDuringConversionsNeverClaimUnwrittenBytes) {
  const char* given = std::getenv("KESTREL_HOSTILE_ROUNDS");
  const int rounds = given != nullptr ? std::atoi(given) : 4000;
  constexpr DWORD kSizes[] = {76, 219, 20 << 16 | 156, 232 << 16 | 220, 0xFFFF0000 | 219, 50};
  std::memset(bytes_, 0x5A, sizeof bytes_);
  std::atomic<bool> stop = false;
  std::thread changer([&] {
    auto* sizes = reinterpret_cast<volatile DWORD*>(bytes_ + 68);
    for (size_t i = 0; !stop; ++i) *sizes = kSizes[i % std::size(kSizes)];
  });
  int unwritten = 0;
  const support::GuardedBuffer output(452);
  for (int round = 0; round < rounds; ++round) {
    std::ranges::fill(output.bytes(), std::byte{0xCD});
    Convert(bytes_, output.data());
    const size_t size = At<WORD>(output.data(), 68);
    const size_t claimed = size + At<WORD>(output.data(), 70);
    const bool isShort = size < 220;  // returned unchanged
    const auto rest = output.bytes().subspan(std::min<size_t>(claimed, 452));
    unwritten += claimed > 452 || (isShort && output.bytes()[claimed - 1] == std::byte{0xCD}) ||
                 std::ranges::any_of(rest, [](std::byte each) { return each != std::byte{}; });
  }
  stop = true;
  changer.join();
  EXPECT_EQ(unwritten, 0) << "of " << rounds;
}

}  // namespace
}  // namespace kestrel
