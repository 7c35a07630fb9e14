"""The FTP server: a real FTP library whose handler knows accounts, faults and the command log."""

import socket
import struct

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import DTPHandler, FTPHandler, proto_cmds
from pyftpdlib.log import logger
from pyftpdlib.servers import FTPServer

from .accounts import Refused
from .faults import CONNECT
from .file_system import DeviceFileSystem, Upload

COMMANDS = ("ABOR", "ALLO", "CWD", "DELE", "EPRT", "EPSV", "FEAT", "HELP", "LIST", "MDTM", "MODE", "NLST", "NOOP",
            "OPTS", "PASS", "PASV", "PORT", "PWD", "QUIT", "REST", "RETR", "SIZE", "STAT", "STOR", "STRU", "SYST",
            "TYPE", "USER")
RESET = struct.pack("ii", 1, 0)  # how a socket lingers that is reset when it is closed
ACCOUNT_COMMAND = {"ACCT": dict(perm=None, auth=True, arg=True, help="Syntax: ACCT <SP> partN (select a partition).")}


class DataChannel(DTPHandler):
    # A stalled transfer stalls until the client gives up.
    timeout = 0

    def __init__(self, sock, cmd_channel):
        self._fault = None
        self._struck = False
        super().__init__(sock, cmd_channel)

    # A client may open the data connection before it sends the command, so the fault comes with the transfer.

    def push_with_producer(self, producer):
        self._fault = self.cmd_channel.take_transfer_fault()
        super().push_with_producer(producer)

    def enable_receiving(self, type, cmd):
        self._fault = self.cmd_channel.take_transfer_fault()
        super().enable_receiving(type, cmd)

    def initiate_send(self):
        if not self._strikes(self.tot_bytes_sent):
            self._limit("ac_out_buffer_size", self.tot_bytes_sent)
            super().initiate_send()

    def handle_read(self):
        if not self._strikes(self.tot_bytes_received):
            self._limit("ac_in_buffer_size", self.tot_bytes_received)
            super().handle_read()

    handle_read_event = handle_read

    def close(self):
        """Replies for the transfer; a complete upload becomes a file just before."""
        if self._closed:
            return
        if self.receive and self.transfer_finished and isinstance(self.file_obj, Upload):
            self._commit()
        self.cmd_channel.transfer_ending = True
        try:
            super().close()
        finally:
            self.cmd_channel.transfer_ending = False
            self.cmd_channel.end_transfer("-")

    def _commit(self):
        try:
            self.file_obj.commit()
        except Refused as error:
            self._end_with(f"550 {error}.")
        except OSError as error:
            self._end_with(f"452 {error.strerror}.")

    def _end_with(self, reply):
        self.transfer_finished = False
        self._resp = (reply, logger.debug)

    def _limit(self, buffer_size, passed):
        """Nothing passes in one go beyond the byte at which the fault strikes."""
        if self._fault:
            setattr(self, buffer_size, min(65536, self._fault.after - passed))

    def _strikes(self, passed):
        if self._struck:
            return True
        if not self._fault or passed < self._fault.after:
            return False
        self._struck = True
        # The channel leaves the loop at once, but what follows waits: the library is still using the channel.
        self.del_channel()
        self.ioloop.call_later(0, self._suffer, _errback=self.handle_error)
        return True

    def _suffer(self):
        if self._closed:
            return
        if self._fault.action == "stall":
            self.cmd_channel.end_transfer("stall")
        elif self._fault.action == "drop":
            self.cmd_channel.drop()
        else:
            if self._fault.action == "reset":
                self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, RESET)
            self._end_with(f"{self._fault.code} Refused on request." if self._fault.action == "reply"
                           else "226 Transfer complete.")
            self.close()


class DeviceHandler(FTPHandler):
    """A subclass made by `make_server` carries these."""
    device = None
    fault_plan = None
    command_log = None
    seconds_per_command = 0

    banner = "Device ready."
    proto_cmds = {**{name: proto_cmds[name] for name in COMMANDS}, **ACCOUNT_COMMAND}
    abstracted_fs = DeviceFileSystem
    dtp_handler = DataChannel
    timeout = 0
    auth_failed_timeout = 0
    # Downloads go through `send`, where faults can count bytes.
    use_sendfile = False

    def __init__(self, conn, server, ioloop=None):
        self.transfer_ending = False
        self._muted = False
        self._entry = None
        self._transfer_entry = None
        self._transfer_fault = None
        self._reply_fault = None
        super().__init__(conn, server, ioloop)

    def handle(self):
        fault = self.fault_plan.next_for(CONNECT)
        self._reply_fault = fault if fault and fault.spoils_reply else None
        if fault and not fault.spoils_reply:
            self._strike(fault)
        else:
            super().handle()

    def pre_process_command(self, line, cmd, arg):
        self._entry = self.command_log.entry(self.fs.account.name if self.fs and self.authenticated else "-", cmd, arg)
        fault = None if self._muted else self.fault_plan.next_for(cmd)
        self._transfer_fault = fault if fault and fault.in_transfer else None
        self._reply_fault = fault if fault and fault.spoils_reply else None
        self.device.clock.advance(self.seconds_per_command)
        if self._muted:
            self._entry.end("mute")
        elif fault and not fault.in_transfer and not fault.spoils_reply:
            self._strike(fault)
        else:
            super().pre_process_command(line, cmd, arg)

    def ftp_ACCT(self, text):
        try:
            self.fs.switch_to(self.device.account(text))
        except Refused as error:
            self.respond(f"501 {error}.")
        else:
            self.respond(f"230 Account {text} selected.")

    def respond(self, resp, *arguments, **keywords):
        """Every reply passes here; a final one ends the line of its command, before the client can read it."""
        code = resp[:3]
        resp = self._spoiled(resp)
        if not resp:
            self.end_transfer("silent")
            return
        if self.transfer_ending:
            self.end_transfer(code)
        elif code in ("125", "150"):
            self._transfer_entry, self._entry = self._entry, None
        elif self._entry:
            self._entry.end(code)
        super().respond(resp, *arguments, **keywords)

    def _spoiled(self, resp):
        """What is said instead; nothing to say nothing."""
        fault, opening = self._reply_fault, resp[:3] in ("125", "150")
        if not fault:
            return resp
        if fault.action == "size" and opening:
            return f"150 Opening data connection ({fault.size} bytes)."
        if fault.action == "size" and resp[:3] == "213":
            return f"213 {fault.size}"
        if fault.action == "silent" and self.transfer_ending:
            return ""
        return f"{resp}\r\n{resp}" if fault.action == "twice" and not opening else resp

    def end_transfer(self, reply):
        if self._transfer_entry:
            self._transfer_entry.end(reply)

    def take_transfer_fault(self):
        fault, self._transfer_fault = self._transfer_fault, None
        return fault

    def drop(self):
        self.end_transfer("drop")
        self.close()

    def close(self):
        super().close()
        for entry in (self._transfer_entry, self._entry):
            if entry:
                entry.end("-")

    def _strike(self, fault):
        if fault.action == "reply":
            if self._entry:
                self._entry.end(str(fault.code))
            super().respond(f"{fault.code} Refused on request.")
            if fault.code == 421:
                self.close_when_done()
            return
        if self._entry:
            self._entry.end(fault.action)
        if fault.action == "mute":
            self._muted = True
        else:
            self.close()


def make_server(device, user, password, fault_plan, command_log, port=0, seconds_per_command=0):
    """Listens on 127.0.0.1; port 0 means any free one. The device's clock moves on with every command."""
    authorizer = DummyAuthorizer()
    authorizer.add_user(user, password, "/", perm="elrdw")
    handler = type("Handler", (DeviceHandler,), dict(authorizer=authorizer, device=device, fault_plan=fault_plan,
                                                     command_log=command_log, seconds_per_command=seconds_per_command))
    return FTPServer(("127.0.0.1", port), handler)
