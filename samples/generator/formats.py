"""The formats of albums.tsv: what iTunes calls them, where it keeps them, how it marks them."""

from typing import NamedTuple, Optional


class Format(NamedTuple):
    kind: str
    extension: Optional[str]  # none: there is no file
    rate: int  # kilobits a second
    media: str  # what "media ..." in playlists.tsv asks for
    folder: Optional[str]  # in the media folder
    marks: dict


VIDEO = {"Has Video": True, "HD": False, "Video Width": 640, "Video Height": 480, "Movie": True}
BOUGHT_FILE = {"Purchased": True, "File Type": int.from_bytes(b"M4A ", "big")}
IN_THE_CLOUD = {"Track Type": "Remote", "Purchased": True}
NOT_LOADED_YET = {"Track Type": "URL", "Podcast": True, "Unplayed": True}
STREAM = {"Track Type": "URL"}

FORMATS = {
    "aac": Format("AAC audio file", "m4a", 256, "music", "Music", {}),
    "purchased": Format("Purchased AAC audio file", "m4a", 256, "music", "Music", BOUGHT_FILE),
    "mp3": Format("MPEG audio file", "mp3", 192, "music", "Music", {}),
    "alac": Format("Apple Lossless audio file", "m4a", 702, "music", "Music", {}),
    "aiff": Format("AIFF audio file", "aif", 1411, "music", "Music", {}),
    "wav": Format("WAV audio file", "wav", 1411, "music", "Music", {}),
    "cloud": Format("Purchased AAC audio file", None, 256, "music", None, IN_THE_CLOUD),
    "stream": Format("MPEG audio stream", None, 128, "stream", None, STREAM),
    "movie": Format("MPEG-4 video file", "m4v", 1187, "movie", "Movies", VIDEO),
    "podcast": Format("MPEG audio file", "mp3", 96, "podcast", "Podcasts", {"Podcast": True}),
    "feed": Format("MPEG audio file", None, 96, "podcast", None, NOT_LOADED_YET),
    "lecture": Format("MPEG audio file", "mp3", 64, "lecture", "iTunes U", {"iTunesU": True}),
    "audiobook": Format("AAC audio file", "m4b", 64, "audiobook", "Audiobooks", {}),
}
