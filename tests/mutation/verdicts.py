"""The verdicts of a sample in a file, a line each, written as they come: what was interrupted goes on."""

import json


class Verdicts:
    """version: of the sources and tests that the next verdicts are of; see reach.version_of()."""

    def __init__(self, path, version):
        self.path, self.version = path, version
        self.rows = {}  # the last row of each mutant
        for line in path.read_text().split("\n") if path.exists() else ():
            try:
                row = json.loads(line)
            except ValueError:
                continue  # the last line, of a run that was killed while it wrote
            self.rows[row["key"]] = row
        with open(path, "a", encoding="utf-8") as file:
            file.write("\n")  # so that the next line is whole in any case

    def of_this_version(self, mutant):
        """The verdict, if these sources and tests gave it."""
        row = self.rows.get(mutant.key())
        return row["verdict"] if row and row["version"] == self.version else None

    def if_noticed(self, mutant):
        """The verdict of any version, unless it is to be asked for anew."""
        row = self.rows.get(mutant.key())
        return row["verdict"] if row and not row["verdict"].startswith("survived") else None

    def judged(self):
        """The keys of the mutants that compiled."""
        return {key for key, row in self.rows.items() if row["verdict"] != "not compiled"}

    def add(self, mutant, verdict):
        row = {"key": mutant.key(), "line": mutant.line, "kind": mutant.kind, "verdict": verdict, "version": self.version}
        self.rows[row["key"]] = row
        with open(self.path, "a", encoding="utf-8") as file:
            file.write(json.dumps(row) + "\n")

    def forget(self):
        self.rows = {}
        self.path.unlink()
