#include "host/help/Guide.h"

#include <array>

namespace tavrel::host {
namespace {

// isMain: whether the program's own help shows it.
struct Line {
  Example example;
  bool isMain;
};

constexpr std::array kLines{
    Line{{"", "tavrel", "the overview of your own library"}, true},
    Line{{"playlists", "tavrel playlists", "its playlists"}, true},
    Line{{"playlists", "tavrel playlists --with vltava", "those that hold a song"}, false},
    Line{{"songs", "tavrel songs \"My Favourites\"", "the songs of a playlist, by its name"}, true},
    Line{{"songs", "tavrel songs 2:0", "the same by group and position"}, false},
    Line{{"songs", "tavrel songs --all --json", "every song, for other programs"}, true},
    Line{{"songs", "tavrel songs --format csv", "every song, for a spreadsheet"}, false},
    Line{{"songs", "tavrel songs --sort rating,name --reverse", "in another order"}, false},
    Line{{"search", "tavrel search dvorak slavonic", "songs that hold all of these words"}, true},
    Line{{"search", "tavrel search --artist dvorak", "by the artist alone"}, true},
    Line{{"stats", "tavrel stats --by decade", "how many songs of each decade"}, true},
    Line{{"export", "tavrel export -o playlists", "your playlists, for a player"}, true},
    Line{{"export", "tavrel export \"Road trip\" -o /media/stick --relative-to /media/stick",
          "one, with paths that hold on another machine"},
         false},
    Line{{"export", "tavrel export --format sqlite -o library.sqlite", "everything, as a database"},
         true},
    Line{{"covers", "tavrel covers Music 3", "the cover of a song, as a file here"}, true},
    Line{{"covers", "tavrel covers Nimrod -o .", "of any song, by its name"}, false},
    Line{{"covers", "tavrel covers --all -o covers", "one cover for each album"}, true},
    Line{{"covers", "tavrel covers --beside-songs --size 600", "into the folders of albums"},
         false},
    Line{{"check", "tavrel check", "what is missing, twice or odd"}, true},
    Line{{"check", "tavrel check --music /media/disk/Music", "with files that lie there"}, false},
    Line{{"check", "tavrel check --map 'E:\\Tapes=/media/disk/Tapes'", "or were on a disk E:"},
         false},
    Line{{"check", "tavrel check --only missing > list.txt", "each song whose file is not here"},
         false},
    Line{{"check", "tavrel check --only orphans -0 | xargs -0 ls -l", "files of no song"}, false},
    Line{{"page", "tavrel page -o music.html --open", "the library as a page to look at"}, true},
    Line{{"page", "tavrel page -o - --covers none | gzip > page.gz", "through a pipe"}, false},
    Line{{"copy", "tavrel copy \"Road trip\" -o /media/stick", "the songs of a list, as files"},
         true},
    Line{{"copy", "tavrel copy Bach Elgar -o DIR -n", "only say what would be copied"}, false},
    Line{{"copy", "tavrel copy Music -o DIR", "everything: iTunes has a list of all songs"}, false},
    Line{{"copy", "tavrel copy Bach -o DIR --name \"{artist} - {name}\"", "named otherwise"},
         false},
    Line{{"ringtones", "tavrel ringtones", "the ringtones"}, true},
    Line{{"ringtones", "tavrel ringtones add Tone.m4r", "add one to iTunes"}, false},
    Line{{"", "tavrel -l export.xml", "a library file that lies elsewhere"}, true},
    Line{{"", "tavrel -l /media/old-mac/me", "that of another home or iTunes folder"}, true},
    Line{{"", "zcat old.xml.gz | tavrel -l -", "one that comes from a program"}, true},
    Line{{"help", "tavrel help songs", "what a command does, and its options"}, true},
    Line{{"completion", "source <(tavrel completion bash)", "for this shell; zsh likewise"}, false},
    Line{{"completion", "tavrel completion fish | source", "the same for fish"}, false},
};

}  // namespace

std::vector<Example> ExamplesOf(std::string_view command) {
  std::vector<Example> examples;
  for (const Line& line : kLines) {
    const bool fits = command.empty() ? line.isMain : line.example.command == command;
    if (fits) examples.push_back(line.example);
  }
  return examples;
}

std::vector<Chapter> Chapters() {
  return {
      {"The library",
       {"Without --home and --library, \"Music/iTunes/iTunes Music Library.xml\" below the home "
        "folder "
        "is read or, where that is missing, the newest library file that lies where iTunes and "
        "Music "
        "put them.",
        "Tables fit the terminal; what goes to a pipe or a file is not cut, unless COLUMNS is set. "
        "On a terminal long output goes through a pager."}},
      {"Environment",
       {"TAVREL_LIBRARY stands for --library. PAGER is the pager, \"less -FRSX\" without it; an "
        "empty "
        "one is none. NO_COLOR turns styles off, COLUMNS is the width of what is no terminal, "
        "TMPDIR the "
        "folder for temporary files."}},
      {"Exit codes",
       {"0 done, 1 nothing found or something failed, 2 wrong usage, 3 there is no library file, "
        "4 it cannot be read."}},
  };
}

}  // namespace tavrel::host
