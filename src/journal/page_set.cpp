#include "journal/page_set.h"

#include <algorithm>

namespace quillomar {
namespace {

constexpr std::size_t kMostWritten = std::size_t{1} << 20;  // bytes in one write
constexpr std::size_t kMostCompared = 32 * kPageSize;       // at a time
constexpr std::uint64_t kMostPagesKept = 64;                // in one record

std::uint64_t PagesOf(std::uint64_t size) {
  return (size + kPageSize - 1) / kPageSize;
}

}  // namespace

PageSet::PageSet(std::shared_ptr<File> file, bool created)
    : file_(std::move(file)),
      created_(created),
      oldSize_(created ? 0 : file_->Size()),
      size_(oldSize_),
      valid_(oldSize_),
      kept_(PagesOf(oldSize_), false) {}

Result PageSet::Load(std::uint64_t page, std::span<std::uint8_t> out) {
  std::fill(out.begin(), out.end(), std::uint8_t{0});
  const std::uint64_t place = page * kPageSize;
  if (place < valid_) {
    const auto onDisk = std::min<std::uint64_t>(out.size(), valid_ - place);
    if (!file_->ReadAt(place, out.first(onDisk))) return Result::kFailed;
  }
  const std::uint64_t end = page + out.size() / kPageSize;
  for (auto changed = pages_.lower_bound(page); changed != pages_.end() && changed->first < end;
       ++changed) {
    const auto at = static_cast<std::ptrdiff_t>((changed->first - page) * kPageSize);
    std::copy(changed->second.begin(), changed->second.end(), out.begin() + at);
  }
  return Result::kDone;
}

Result PageSet::Write(std::uint64_t offset, ByteSpan bytes) {
  size_ = std::max(size_, offset + bytes.size());
  Bytes now;
  while (!bytes.empty()) {
    const std::uint64_t first = offset / kPageSize;
    const std::size_t begin = offset % kPageSize;
    const ByteSpan part = bytes.first(std::min(bytes.size(), kMostCompared - begin));
    now.resize(PagesOf(begin + part.size()) * kPageSize);
    if (Failed(Load(first, now))) return Result::kFailed;
    TakeDifferences(first, now, begin, part);
    offset += part.size();
    bytes = bytes.subspan(part.size());
  }
  return Result::kDone;
}

void PageSet::TakeDifferences(std::uint64_t first, ByteSpan now, std::size_t begin,
                              ByteSpan wanted) {
  while (!wanted.empty()) {
    const ByteSpan part = wanted.first(std::min(wanted.size(), kPageSize - begin));
    const ByteSpan page = now.first(kPageSize);
    if (!std::equal(part.begin(), part.end(), page.begin() + static_cast<std::ptrdiff_t>(begin))) {
      Page& changed = pages_[first];
      changed.assign(page.begin(), page.end());
      std::copy(part.begin(), part.end(), changed.begin() + static_cast<std::ptrdiff_t>(begin));
    }
    wanted = wanted.subspan(part.size());
    now = now.subspan(kPageSize);
    begin = 0;
    ++first;
  }
}

void PageSet::SetSize(std::uint64_t size) {
  if (size < size_) {
    pages_.erase(pages_.lower_bound(PagesOf(size)), pages_.end());
    const auto last = pages_.find(size / kPageSize);
    if (last != pages_.end()) {
      std::fill(last->second.begin() + static_cast<std::ptrdiff_t>(size % kPageSize),
                last->second.end(), std::uint8_t{0});
    }
  }
  valid_ = std::min(valid_, size);
  size_ = size;
}

std::optional<std::size_t> PageSet::Read(std::uint64_t offset, std::span<std::uint8_t> out) {
  if (offset >= size_) return 0;
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), size_ - offset));
  const std::size_t begin = offset % kPageSize;
  Bytes pages(PagesOf(begin + count) * kPageSize);
  if (Failed(Load(offset / kPageSize, pages))) return std::nullopt;
  std::copy_n(pages.begin() + static_cast<std::ptrdiff_t>(begin), count, out.begin());
  return count;
}

bool PageSet::Pending() const {
  const std::uint64_t onDisk = file_->Size();
  return !pages_.empty() || size_ != onDisk || valid_ < onDisk;
}

std::vector<PageSet::Run> PageSet::TakeEndangered() {
  std::vector<std::uint64_t> endangered;
  const auto take = [&](std::uint64_t page) {
    if (page >= kept_.size() || kept_[page]) return;
    kept_[page] = true;
    endangered.push_back(page);
  };
  for (const auto& [page, bytes] : pages_) take(page);
  for (std::uint64_t page = valid_ / kPageSize; valid_ < oldSize_ && page < kept_.size(); ++page) {
    take(page);
  }
  std::sort(endangered.begin(), endangered.end());
  std::vector<Run> runs;
  for (const std::uint64_t page : endangered) {
    const std::uint64_t place = page * kPageSize;
    const auto size =
        static_cast<std::size_t>(std::min<std::uint64_t>(kPageSize, oldSize_ - place));
    const bool follows = !runs.empty() && runs.back().place + runs.back().size == place &&
                         runs.back().size < kMostPagesKept * kPageSize;
    if (follows) {
      runs.back().size += size;
    } else {
      runs.push_back({place, size});
    }
  }
  return runs;
}

Result PageSet::WritePages(std::uint64_t first, const Bytes& bytes) {
  if (bytes.empty()) return Result::kDone;
  const std::uint64_t place = first * kPageSize;
  const auto count = std::min<std::uint64_t>(bytes.size(), size_ - place);
  return file_->WriteAt(place, ByteSpan(bytes).first(count));
}

Result PageSet::Apply() {
  if (!Pending()) return Result::kDone;
  applied_ = true;
  // What was cut off and then grown again comes back as zeros.
  if (valid_ < file_->Size() && Failed(file_->SetSize(valid_))) return Result::kFailed;
  if (size_ != file_->Size() && Failed(file_->SetSize(size_))) return Result::kFailed;
  Bytes run;
  std::uint64_t first = 0;
  for (const auto& [page, bytes] : pages_) {
    if (page != first + run.size() / kPageSize || run.size() >= kMostWritten) {
      if (Failed(WritePages(first, run))) return Result::kFailed;
      run.clear();
      first = page;
    }
    run.insert(run.end(), bytes.begin(), bytes.end());
  }
  if (Failed(WritePages(first, run))) return Result::kFailed;
  pages_.clear();
  valid_ = size_;
  return Result::kDone;
}

}  // namespace quillomar
