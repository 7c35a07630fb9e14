"""An account as the FTP library's file system: one flat folder, nothing of the machine's disk."""

import calendar
import io
import os
import stat

from pyftpdlib.filesystems import AbstractedFS, FilesystemError

from .accounts import Refused


def name_in(path):
    return path.lstrip("/")


class Download(io.BytesIO):
    def __init__(self, path, data):
        super().__init__(data)
        self.name = path


class Upload(io.BytesIO):
    """Collects an upload; only a complete one becomes a file."""

    def __init__(self, path, account):
        super().__init__()
        self.name = path
        self._account = account

    def commit(self):
        self._account.write(name_in(self.name), self.getvalue())


class DeviceFileSystem(AbstractedFS):
    def __init__(self, root, cmd_channel):
        super().__init__(root, cmd_channel)
        self.account = cmd_channel.device.own_account

    def switch_to(self, account):
        self.account = account

    def open(self, filename, mode):
        if mode == "rb":
            return Download(filename, self._read(filename))
        if mode != "wb":
            raise FilesystemError("An upload cannot be continued")
        _refusing(self.account.check_writable, name_in(filename))
        return Upload(filename, self.account)

    def getsize(self, path):
        """The next download may send more: calls come in meanwhile."""
        return len(self._read(path))

    def remove(self, path):
        _refusing(self.account.delete, name_in(path))

    def listdir(self, path):
        return self.account.names()

    def chdir(self, path):
        if path != "/":
            raise FilesystemError("No such folder")

    def isfile(self, path):
        return name_in(path) in self.account.names()

    def isdir(self, path):
        return path == "/"

    def islink(self, path):
        return False

    def lexists(self, path):
        return self.isdir(path) or self.isfile(path)

    def realpath(self, path):
        return path

    def validpath(self, path):
        return True

    def stat(self, path):
        if self.isdir(path):
            return self._stat_result(stat.S_IFDIR | 0o755, 0)
        return self._stat_result(stat.S_IFREG | 0o644, len(self._read(path)))

    lstat = stat

    def getmtime(self, path):
        return calendar.timegm(self.cmd_channel.device.clock.now().timetuple())

    def _stat_result(self, mode, size):
        moment = self.getmtime("/")
        return os.stat_result((mode, 0, 0, 1, 0, 0, size, moment, moment, moment))

    def _read(self, path):
        return _refusing(self.account.read, name_in(path))


def _refusing(operation, *arguments):
    try:
        return operation(*arguments)
    except Refused as error:
        raise FilesystemError(str(error)) from error
