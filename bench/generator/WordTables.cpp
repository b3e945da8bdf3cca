#include "bench/generator/WordTables.h"

namespace tavrel::bench {
namespace {

using Text = std::string_view;

constexpr Text asciiWords[] = {
    "Love",    "Night",  "The",   "Heart",  "You",   "Blue",    "Time",   "Dance",  "Fire",
    "Rain",    "Home",   "Light", "River",  "Dream", "Summer",  "Baby",   "World",  "Road",
    "Moon",    "Sun",    "Girl",  "City",   "Don't", "Morning", "Street", "Winter", "Gold",
    "Shadow",  "Train",  "Waltz", "Sonata", "Song",  "Sky",     "Stone",  "Garden", "Silver",
    "Highway", "Mother", "Radio", "Theme",  "Ocean", "Goodbye"};
constexpr Text asciiFirsts[] = {
    "Al",  "Am",  "Ar",  "Ba", "Bel", "Ben", "Bra", "Ca",  "Cal", "Car", "Co",  "Cor",
    "Da",  "Del", "Do",  "El", "Em",  "Fa",  "Fen", "Fla", "Ga",  "Gor", "Gra", "Ha",
    "Hol", "In",  "Jo",  "Ka", "Ker", "La",  "Lin", "Lo",  "Ma",  "Mar", "Mel", "Mi",
    "Mon", "Na",  "Nor", "Or", "Pa",  "Per", "Ra",  "Ro",  "Sa",  "Sel", "Sha", "Ster",
    "Ta",  "Tor", "Tri", "Va", "Ver", "Wal", "Wil", "Za"};
constexpr Text asciiRests[] = {
    "ba", "ber", "by",  "cent", "da",  "den", "der", "dy",  "fer", "ga",  "go",  "ham",
    "in", "ka",  "kin", "la",   "ler", "ley", "lin", "lo",  "ly",  "man", "mer", "mi",
    "na", "ner", "ny",  "on",   "ra",  "rek", "ri",  "ro",  "sa",  "sel", "son", "sta",
    "ta", "ter", "tin", "ton",  "tra", "ver", "vi",  "win", "za",  "zel", "zi",  "zon"};

constexpr Text accentedWords[] = {"Corazón", "Été",    "Café",    "Señor",   "Déjà",
                                  "Über",    "Canção", "Mañana",  "Forêt",   "Schön",
                                  "Åska",    "Noël",   "Coração", "Después", "Élan"};
constexpr Text accentedFirsts[] = {"Á",  "Bé", "Bö", "Cé", "Dó", "É",  "Fé", "Frü", "Gö", "Hé",
                                   "Í",  "Jó", "Kü", "Lé", "Má", "Mö", "Né", "Ó",   "Pé", "Ré",
                                   "Sé", "Sú", "Té", "Ú",  "Vá", "Zé", "Ça", "Ño",  "Pâ", "Rê"};
constexpr Text accentedRests[] = {"bar",  "bre", "cía", "da", "del", "do",  "grün", "la",
                                  "lein", "lón", "ma",  "mé", "na",  "nís", "ño",   "ra",
                                  "re",   "rés", "ro",  "sé", "ta",  "tès", "vel",  "zão"};

constexpr Text cyrillicWords[] = {"Любовь", "Ночь",  "Сердце", "Дорога", "Звезда", "Мой",
                                  "Ёлка",   "Весна", "Город",  "Песня",  "Дождь",  "Солнце"};
constexpr Text cyrillicFirsts[] = {"Ба", "Ва", "Га", "До", "Же", "За", "Ка", "Ко", "Ле", "Ма",
                                   "Ми", "На", "Ни", "О",  "Па", "По", "Ра", "Ро", "Са", "Со",
                                   "Та", "У",  "Фё", "Ча", "Ша", "Ю",  "Я",  "Бе", "Ве", "Гри"};
constexpr Text cyrillicRests[] = {"ва",  "вич", "го", "дый", "ка",  "ков", "ла",  "лёк",
                                  "лин", "ма",  "на", "нов", "ня",  "ра",  "рин", "ров",
                                  "ся",  "та",  "ти", "той", "тор", "цев", "ша",  "щий"};

constexpr Text cjkWords[] = {"愛", "夢", "月光", "心", "夜", "花", "東京", "海", "春天", "世界"};
constexpr Text cjkFirsts[] = {"青", "雨", "風", "雪", "山", "川", "空", "星", "火", "水",
                              "木", "金", "中", "小", "大", "新", "古", "紅", "白", "黒",
                              "千", "天", "南", "北", "サ", "ミ", "ラ", "カ", "ト", "リ"};
constexpr Text cjkRests[] = {"人", "子", "家", "道", "音", "楽", "歌", "声", "手", "日",
                             "年", "国", "城", "門", "鳥", "魚", "の", "と", "ン", "ク",
                             "ス", "ナ", "メ", "ロ", "森", "原", "田", "村", "口", "目"};

constexpr WordTable tables[] = {
    {asciiWords, asciiFirsts, asciiRests, 350, 2, " "},
    {accentedWords, accentedFirsts, accentedRests, 400, 2, " "},
    {accentedWords, accentedFirsts, accentedRests, 400, 2, " "},  // decomposed afterwards
    {cyrillicWords, cyrillicFirsts, cyrillicRests, 350, 2, " "},
    {cjkWords, cjkFirsts, cjkRests, 400, 2, ""},
};
static_assert(std::size(tables) == scriptCount);

constexpr Text genres[] = {"Rock",       "Pop",        "Alternative",       "Jazz",
                           "Classical",  "R&B/Soul",   "Hip Hop/Rap",       "Electronic",
                           "Soundtrack", "Folk",       "Country",           "Alternative & Punk",
                           "Metal",      "Blues",      "Indie Rock",        "World",
                           "Dance",      "Reggae",     "Singer/Songwriter", "Latin",
                           "Holiday",    "Audiobooks", "Children's Music",  "Drum & Bass"};

constexpr Decomposition decompositions[] = {
    {"Á", "A\u0301"}, {"Å", "A\u030A"}, {"Ç", "C\u0327"}, {"É", "E\u0301"}, {"Í", "I\u0301"},
    {"Ñ", "N\u0303"}, {"Ó", "O\u0301"}, {"Ú", "U\u0301"}, {"Ü", "U\u0308"}, {"à", "a\u0300"},
    {"á", "a\u0301"}, {"â", "a\u0302"}, {"ã", "a\u0303"}, {"ç", "c\u0327"}, {"è", "e\u0300"},
    {"é", "e\u0301"}, {"ê", "e\u0302"}, {"ë", "e\u0308"}, {"í", "i\u0301"}, {"ñ", "n\u0303"},
    {"ó", "o\u0301"}, {"ö", "o\u0308"}, {"ú", "u\u0301"}, {"ü", "u\u0308"}, {"Ё", "Е\u0308"},
    {"ё", "е\u0308"}, {"й", "и\u0306"},
};

}  // namespace

const WordTable& WordTableOf(Script script) noexcept {
  return tables[static_cast<std::size_t>(script)];
}

std::span<const std::string_view> Genres() noexcept {
  return genres;
}

std::span<const Decomposition> Decompositions() noexcept {
  return decompositions;
}

}  // namespace tavrel::bench
