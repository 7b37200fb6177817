#include "platform/machine/store.h"

#include <stdexcept>

#include "platform/machine/text.h"

namespace platform {

Store::Store(const std::filesystem::path& file, Faults& faults)
    : faults_(faults), database_(file.empty() ? nullptr : OpenDatabase(file)) {
  Refresh();
}

// Reads the values again when another process has written some.
void Store::Refresh() {
  if (database_ == nullptr || inTransaction_) return;
  const int64_t version = database_->Version();
  if (version == version_) return;
  rows_ = database_->Load();
  version_ = version;
  ++storeVersion_;
}

void Store::Transaction(const std::function<void()>& body) {
  const std::lock_guard lock(mutex_);
  if (inTransaction_) return body();
  if (database_ != nullptr) database_->Begin();
  Rows before;  // what a rollback restores
  try {
    Refresh();
    before = rows_;
    inTransaction_ = true;
    body();
    if (!failure_.empty()) throw std::runtime_error(failure_);
    if (database_ != nullptr) database_->Commit();
  } catch (...) {
    if (database_ != nullptr) database_->Rollback();
    if (inTransaction_) rows_ = std::move(before);
    ++storeVersion_;
    inTransaction_ = false;
    failure_.clear();
    throw;
  }
  inTransaction_ = false;
}

// Writes a value; removes it when there is no row.
void Store::Set(const RowKey& key, std::optional<Row> row) {
  try {
    // After a failure the transaction writes nothing more: SQLite may have rolled it back.
    if (!failure_.empty()) throw std::runtime_error(failure_);
    if (faults_.ShouldFail(Fault::kStore)) throw std::runtime_error("the disk is full");
    if (database_ != nullptr) database_->Set(key, row);
  } catch (const std::runtime_error& failure) {
    if (inTransaction_) failure_ = failure.what();
    throw;
  }
  if (row) {
    rows_[key] = std::move(*row);
  } else {
    rows_.erase(key);
  }
  ++storeVersion_;
}

std::optional<DataValue> Store::Get(std::u16string_view path, std::u16string_view name) {
  const std::lock_guard lock(mutex_);
  Refresh();
  const auto found = rows_.find({FoldCase(path), FoldCase(name)});
  if (found == rows_.end()) return std::nullopt;
  return found->second.data;
}

std::map<std::u16string, Row> Store::All(std::u16string_view path) {
  const std::lock_guard lock(mutex_);
  Refresh();
  const std::u16string folded = FoldCase(path);
  std::map<std::u16string, Row> all;
  for (auto row = rows_.lower_bound({folded, {}}); row != rows_.end() && row->first.first == folded;
       ++row) {
    all[row->first.second] = row->second;
  }
  return all;
}

void Store::Put(std::u16string_view path, std::u16string_view name, DataValue data) {
  const std::lock_guard lock(mutex_);
  Set({FoldCase(path), FoldCase(name)}, Row{std::u16string(name), std::move(data)});
}

bool Store::Remove(std::u16string_view path, std::u16string_view name) {
  const std::lock_guard lock(mutex_);
  const bool there = Get(path, name).has_value();
  if (there) Set({FoldCase(path), FoldCase(name)}, std::nullopt);
  return there;
}

void Store::RemoveAll(std::u16string_view path) {
  Transaction([&] {
    for (const auto& [name, row] : All(path)) Set({FoldCase(path), name}, std::nullopt);
  });
}

uint64_t Store::Version() {
  const std::lock_guard lock(mutex_);
  Refresh();
  return storeVersion_;
}

}  // namespace platform
