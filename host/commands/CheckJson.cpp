// What tavrel check has found, as JSON.
#include "host/commands/CheckReport.h"
#include "host/commands/SongJson.h"
#include "host/output/Json.h"

namespace tavrel::host {
namespace {

std::int64_t SizeOf(const auto& list) {
  return static_cast<std::int64_t>(list.size());
}

// The songs as they are everywhere, with the path that was looked for behind.
class JsonSongs {
 public:
  explicit JsonSongs(Session& session) : session_(session) {
    columns_.fields = AllFields();
    songs_.emplace(columns_, session);
  }

  void Write(const Positions& positions) {
    std::string_view between = "\n";
    session_.output.Write("[");
    ForEachOf(positions, columns_.Wanted(), session_, [&](const SongRecord& song) {
      std::string json(between);
      songs_->AppendOpen(json, song);
      json += ",\"sought\":" + JsonValue(song.SoughtPath()).Text() + "}";
      session_.output.Write(json);
      between = ",\n";
    });
    session_.output.Write("]");
  }

  void Write(const std::vector<Duplicates>& groups) {
    std::string_view between;
    session_.output.Write("[");
    for (const Duplicates& group : groups) {
      session_.output.Write(between);
      session_.output.Write(group.isOneFile ? "{\"oneFile\":true,\"songs\":"
                                            : "{\"oneFile\":false,\"songs\":");
      Write(group.songs);
      session_.output.Write("}");
      between = ",\n";
    }
    session_.output.Write("]");
  }

 private:
  Session& session_;
  SongColumns columns_;
  std::optional<SongJson> songs_;
};

std::string TextsJson(const auto& texts) {
  JsonArray array;
  for (const std::string& text : texts) array.Add(text);
  return array.Text();
}

std::string CountsJson(const SongChecks& songs) {
  JsonObject counts{};
  for (std::size_t i = 0; i < kFileStatusCount; ++i) {
    const auto status = static_cast<FileStatus>(i);
    counts.Add({StatusName(status), songs.tally.Count(status)});
  }
  return counts.Text();
}

std::string CoversJson(const CoverChecks& covers) {
  JsonArray without;
  for (const Album& album : covers.without) {
    without.Add(JsonObject{{"album", album.name}, {"songs", SizeOf(album.songs)}});
  }
  std::string damaged = TextsJson(covers.damaged);
  return "{\"cache\":" + JsonValue(covers.hasCache).Text() + ",\"without\":" + without.Text() +
         ",\"unreadable\":" + damaged + "}";
}

std::string FileJson(const FileChecks& file, const Session& session) {
  JsonArray findings;
  for (const FileFinding& finding : file.findings) {
    JsonArray ids;
    ForEachOf(finding.songs, SetOf({Field::Id}), session,
              [&](const SongRecord& song) { ids.Add(song.Text(Field::Id)); });
    findings.Add(JsonObject{
        {"finding", finding.name}, {"what", finding.what}, {"count", finding.count}, {"ids", ids}});
  }
  return JsonObject{{"whole", file.isWhole}, {"findings", findings}}.Text();
}

}  // namespace

void PrintCheckJson(const CheckReport& report, CheckPart part, Session& session) {
  JsonSongs songs(session);
  Output& output = session.output;
  const bool isAll = part == CheckPart::All;
  std::string_view opening = "{";
  const auto begin = [&](std::string_view name) {
    if (isAll) output.Write(std::string(opening) + "\"" + std::string(name) + "\":");
    opening = ",\n";
  };
  const auto isWanted = [&](CheckPart one) { return isAll || part == one; };
  if (isAll) {
    begin("songs");
    output.Write(CountsJson(*report.songs));
  }
  if (isWanted(CheckPart::Missing)) {
    begin("missing");
    songs.Write(report.songs->missing);
  }
  if (isWanted(CheckPart::Respelled)) {
    begin("respelled");
    songs.Write(report.songs->respelled);
  }
  if (isWanted(CheckPart::Duplicates)) {
    begin("duplicates");
    songs.Write(report.songs->duplicates);
  }
  if (isWanted(CheckPart::Orphans)) {
    begin("orphans");
    output.Write(TextsJson(*report.orphans));
  }
  if (isWanted(CheckPart::Covers)) {
    begin("covers");
    output.Write(CoversJson(*report.covers));
  }
  if (isWanted(CheckPart::File)) {
    begin("file");
    output.Write(FileJson(*report.file, session));
  }
  output.WriteLine(isAll ? "}" : "");
}

}  // namespace tavrel::host
