"""Where uploaded files outlive the program: one folder per account under the data folder, if there is one."""

from pathlib import Path


class NoUploadFolder:
    def load(self):
        return {}

    def save(self, name, data):
        pass

    def remove(self, name):
        pass


class UploadFolder:
    def __init__(self, data_dir, account):
        self._folder = Path(data_dir) / account

    def load(self):
        if not self._folder.is_dir():
            return {}
        return {path.name: path.read_bytes() for path in self._folder.iterdir() if path.name[0] != "."}

    def save(self, name, data):
        """A reader of the folder sees the old file or the new one, never a part."""
        self._folder.mkdir(parents=True, exist_ok=True)
        aside = self._folder / f".{name}.new"
        aside.write_bytes(data)
        aside.replace(self._folder / name)

    def remove(self, name):
        (self._folder / name).unlink(missing_ok=True)


def uploads_of(data_dir, account):
    return UploadFolder(data_dir, account) if data_dir else NoUploadFolder()
