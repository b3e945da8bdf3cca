#include "host/copying/CopyRun.h"

#include <sys/stat.h>

#include "host/export/M3u.h"
#include "host/library/SongRecord.h"
#include "host/output/NewFile.h"
#include "system/BlockedSignals.h"
#include "system/FolderListing.h"

namespace tavrel::host {
namespace {

std::uint64_t SizeOf(const std::string& path) {
  struct stat state = {};
  return ::stat(path.c_str(), &state) == 0 ? static_cast<std::uint64_t>(state.st_size) : 0;
}

}  // namespace

CopyWork CopyRun::Foresee(const std::function<void(const FileToCopy&)>& visit) const {
  CopyWork work;
  for (const FileToCopy& file : plan_.files) {
    const std::string target = system::PathIn(folder_, file.target);
    const bool isToDo = FileCopier::Foresee(file.source, target, options_.force);
    if (!isToDo) continue;
    ++work.files;
    work.bytes += SizeOf(file.source);
    visit(file);
  }
  return work;
}

const CopyReport& CopyRun::Run(
    const std::function<void(std::uint64_t bytes, std::size_t files)>& onDone) {
  FileCopier copier(options_, [&](std::uint64_t bytes) {
    bytesOfFile_ += bytes;
    onDone(bytes, 0);
  });
  isThere_.assign(plan_.files.size(), false);
  for (std::size_t i = 0; i < plan_.files.size() && !IsOver(); ++i) {
    Try([&] { CopyFile(i, copier); });
    onDone(0, 1);
  }
  for (const ListToCopy& list : plan_.lists) {
    if (!IsOver()) Try([&] { WriteList(list); });
  }
  report_.whyNotLinked = copier.WhyNotLinked();
  return report_;
}

void CopyRun::Try(const std::function<void()>& work) {
  try {
    RequireNoEndingSignal();
    work();
  } catch (const WriteFailure& failure) {
    report_.failed.emplace_back(failure.what());
    report_.isDiskLost = failure.IsOfTheDisk();
  } catch (const Failure& failure) {
    report_.isStopped = system::EndingSignalWaits();
    if (*failure.what() != '\0') report_.failed.emplace_back(failure.what());
  }
}

void CopyRun::MakeFolderOf(const std::string& target) {
  const std::string folder = target.substr(0, target.rfind('/'));
  if (folders_.contains(folder)) return;
  MakeFolders(folder);
  folders_.insert(folder);
}

void CopyRun::CopyFile(std::size_t number, FileCopier& copier) {
  const FileToCopy& file = plan_.files[number];
  const std::string target = system::PathIn(folder_, file.target);
  MakeFolderOf(target);
  bytesOfFile_ = 0;
  const CopyEnd end = copier.Copy(file.source, target);
  isThere_[number] = true;
  switch (end) {
    case CopyEnd::Copied:
      ++report_.copied;
      report_.bytes += bytesOfFile_;
      break;
    case CopyEnd::Linked:
      ++report_.linked;
      break;
    case CopyEnd::Left:
      ++report_.left;
      break;
    case CopyEnd::Differs:
      report_.differs.push_back(target);
      break;
  }
}

void CopyRun::WriteList(const ListToCopy& list) {
  M3uText text(list.playlist->name.value_or(""), M3uEncoding::Utf8);
  SongRecordReader reader(
      library_, SetOf({Field::Name, Field::Artist, Field::Album, Field::Track, Field::Seconds}));
  for (std::size_t i = 0; i < list.files.size(); ++i) {
    const std::optional<std::size_t> file = list.files[i];
    if (!file || !isThere_[*file]) continue;
    const SongRecord& song = reader.Read(list.playlist->handle, static_cast<std::int32_t>(i));
    PlaylistEntry entry;
    entry.name = song.Text(Field::Name);
    entry.artist = song.Text(Field::Artist);
    entry.album = song.Text(Field::Album);
    entry.milliseconds = song.Milliseconds();
    entry.track = song.Number(Field::Track);
    const std::string target = system::PathIn(folder_, plan_.files[*file].target);
    entry.path = target;
    entry.written = plan_.files[*file].target;
    text.Add(entry);
  }
  const std::string bytes = text.Finish();
  const std::string target = system::PathIn(folder_, list.target);
  MakeFolderOf(target);
  if (HoldsText(target, bytes)) {
    ++report_.listsLeft;
  } else if (WriteNewFile(target, bytes, options_.force ? IfThere::Replace : IfThere::Keep)) {
    ++report_.lists;
  } else {
    report_.differs.push_back(target);
  }
}

}  // namespace tavrel::host
