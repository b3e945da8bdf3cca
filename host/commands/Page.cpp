// tavrel page: the library as one file to look at.
#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/commands/Commands.h"
#include "host/output/Failure.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/MessageGuard.h"
#include "host/output/NewFile.h"
#include "host/output/Opening.h"
#include "host/output/Text.h"
#include "host/page/ContentsReader.h"
#include "host/page/CoverSheets.h"
#include "host/page/PageFile.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kUsualCovers = 2000;
constexpr std::size_t kLargePage = 25'000'000;  // in bytes

struct PageArguments {
  std::optional<std::string> target;
  std::optional<std::string> covers;
  std::optional<std::string> title;
  bool withPaths = false;
  bool open = false;
  std::size_t mostCovers = kUsualCovers;
};

std::size_t MostCovers(const std::optional<std::string>& covers) {
  if (!covers) return kUsualCovers;
  if (*covers == "all") return SIZE_MAX;
  if (*covers == "none") return 0;
  std::size_t most = 0;
  const auto [end, error] = std::from_chars(covers->data(), covers->data() + covers->size(), most);
  if (error != std::errc() || end != covers->data() + covers->size()) {
    throw UsageError("--covers: a number, all or none");
  }
  return most;
}

void Check(PageArguments& arguments) {
  if (!arguments.target) throw UsageError("page needs a file to write: -o FILE.html");
  if (arguments.target->empty()) throw UsageError("-o: the name is empty");
  if (arguments.open && *arguments.target == "-") {
    throw UsageError("--open needs a file; - is standard output");
  }
  arguments.mostCovers = MostCovers(arguments.covers);
}

// Not given back piece by piece: the program ends with the command, and the system takes all of it back at once.
const PageContents& UntilTheEnd(PageContents contents) {
  static const PageContents* kept = nullptr;
  kept = new PageContents(std::move(contents));
  return *kept;
}

std::int64_t CountCovers(const PageCovers& covers) {
  std::int64_t count = 0;
  for (const std::int64_t number : covers.places.numbers) count += number != 0 ? 1 : 0;
  return count;
}

void Tell(const std::string& path, std::size_t bytes, const PageContents& contents,
          const PageCovers& covers, Session& session) {
  const auto songs = static_cast<std::int64_t>(contents.songs);
  if (session.options.json) {
    session.output.WriteLine(JsonObject{
        {"file", path}, {"bytes", bytes}, {"songs", songs}, {"covers", CountCovers(covers)}}
                                 .Text());
  } else if (!session.options.quiet) {
    session.output.WriteLine(Clean(path) + ": " + Counted(songs, "song") + ", " +
                             Counted(CountCovers(covers), "cover") + ", " + SizeText(bytes));
  }
  if (bytes > kLargePage && !session.options.quiet) {
    Complain("the page is large for a browser, above all on a phone; --covers N makes it smaller");
  }
}

std::size_t SizeOf(const std::vector<std::string>& pieces) {
  std::size_t size = 0;
  for (const std::string& piece : pieces) size += piece.size();
  return size;
}

// False when there is something of that name that is to be kept.
bool WritePieces(const std::string& path, const std::vector<std::string>& pieces, IfThere ifThere) {
  if (ifThere == IfThere::Keep && IsTaken(path)) return false;  // saves the work
  NewFile file(path);
  for (const std::string& piece : pieces) file.Write(piece);
  return file.Finish(ifThere);
}

ExitCode WritePage(const PageArguments& arguments, Session& session) {
  const std::string& path = *arguments.target;
  const bool isOutput = path == "-";
  // A page takes the place of the one before, and of nothing else.
  const IfThere ifThere = !isOutput && IsPage(path) ? IfThere::Replace : IfThere::Keep;
  const PageContents& contents = UntilTheEnd(ReadContents(session.library, arguments.withPaths));
  TellWhatWasFound(contents.tally, session);
  const PageCovers covers = MakeCovers(contents, arguments.mostCovers, session);
  const std::vector<std::string> page = MakePage(contents, covers, arguments.title.value_or(""));
  if (isOutput) {
    for (const std::string& piece : page) session.output.Write(piece);
    return ExitCode::Done;
  }
  if (!WritePieces(path, page, ifThere)) {
    throw Failure(ExitCode::Failed,
                  Clean(path) +
                      " is there already, and is no page that tavrel has written; take "
                      "another name, or remove it");
  }
  Tell(path, SizeOf(page), contents, covers, session);
  if (!arguments.open || OpenForUser(path)) return ExitCode::Done;
  Complain("no program of the desktop opens the page; open " + Clean(path) + " with a browser");
  return ExitCode::Failed;
}

}  // namespace

void DefinePage(CommandDefinition program) {
  const auto arguments = std::make_shared<PageArguments>();
  CommandDefinition command =
      program.AddCommand("page", "Write the library as one page for a browser, to look at");
  command.AddText("-o,--output", arguments->target, "FILE.html",
                  "The file to write; a page that was written before is replaced.\n"
                  "- is standard output");
  command.AddText("--covers", arguments->covers, "N|all|none",
                  "Covers for so many albums, those played most; 2000 unless told\n"
                  "otherwise");
  command.AddText("--title", arguments->title, "TEXT", "What stands over the page");
  command.AddFlag("--paths", arguments->withPaths,
                  "Also where the songs' files lie; how that is written says the\n"
                  "--paths before the command: tavrel --paths raw page --paths");
  command.AddFlag("--open", arguments->open, "Open the page when it is written");
  command.Makes([arguments] {
    Check(*arguments);
    return Task{.run = [arguments](Session& session) { return WritePage(*arguments, session); },
                .isPaged = false};
  });
}

}  // namespace tavrel::host
