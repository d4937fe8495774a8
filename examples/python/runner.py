#!/usr/bin/env python3
"""A whole runner in one file and without Qt: starts a program, brings it up, asks it questions.

    runner.py PATH-TO-VORKEL PROGRAM [ARGUMENT...]

It shows what docs/wire-protocol.md tells; use it as a start for a runner in another language.
"""
import os
import socket
import struct
import subprocess
import sys
import zlib

SERVER, APPLICATION, BROADCAST = 1, 2, 0xFFFFFFFF
CALL, REPLY, SEND = 1, 2, 3
ERROR, MORE, COMPRESSED = 1, 2, 4
NULL = 0xFFFFFFFF


# Values: a type number, then the value.

def pack_text(text):
    data = text.encode("utf-16-be")
    return struct.pack(">I", len(data)) + data


def pack_value(value):
    if value is None:
        return struct.pack(">II", 0, NULL)
    if isinstance(value, bool):
        return struct.pack(">I?", 18, value)
    if isinstance(value, int):
        return struct.pack(">Ii", 16, value)
    if isinstance(value, bytes):
        return struct.pack(">II", 29, len(value)) + value
    return struct.pack(">I", 3) + pack_text(value)


class Reader:
    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, form):
        values = struct.unpack_from(form, self.data, self.at)
        self.at += struct.calcsize(form)
        return values[0]

    def raw(self):
        length = self.take(">I")
        if length == NULL:
            return b""
        self.at += length
        return self.data[self.at - length:self.at]

    def text(self):
        return self.raw().decode("utf-16-be")

    def value(self):
        kind = self.take(">I")
        if kind == 0:
            self.raw()
            return None
        if kind == 4:
            return [self.text() for _ in range(self.take(">I"))]
        plain = {16: ">i", 17: ">I", 18: ">?", 19: ">d", 33: ">q", 34: ">Q"}
        if kind in plain:
            return self.take(plain[kind])
        return {3: self.text, 29: self.raw}[kind]()

    def values(self):
        return [self.value() for _ in range(self.take(">I"))]


# Messages: a length that counts itself, then the rest.

class Connection:
    def __init__(self, stream):
        self.stream, self.last_id, self.chunks = stream, 0, {}

    def read_frame(self):
        length = struct.unpack(">I", self.read_exactly(4))[0]
        return self.read_exactly(length - 4)

    def read_exactly(self, count):
        data = b""
        while len(data) < count:
            piece = self.stream.recv(count - len(data))
            if not piece:
                sys.exit("the program closed the connection")
            data += piece
        return data

    def write_frame(self, body):
        self.stream.sendall(struct.pack(">I", len(body) + 4) + body)

    def shake_hands(self):
        frame = Reader(self.read_frame())
        _, _, _, status = (frame.take(">I") for _ in range(4))
        if status != 0:
            sys.exit("refused: " + frame.text())
        frame.take(">III")
        name = frame.text()
        self.write_frame(struct.pack(">IIII", 0, 0x070101F0, 0x070000A0, 0)
                         + struct.pack(">III", APPLICATION, SERVER, 4) + pack_text(name))
        self.write_frame(struct.pack(">IIIiI", BROADCAST, 32, 0, 0, 0))
        return name

    def send(self, kind, name, *arguments):
        self.last_id += 1
        body = pack_text(name) + struct.pack(">I", len(arguments)) + b"".join(map(pack_value, arguments))
        # A longer body travels as a zlib stream in several messages.
        assert len(body) <= 10216
        self.write_frame(struct.pack(">IIIiI", APPLICATION, kind, SERVER, self.last_id, 0) + body)
        return self.last_id

    def receive(self):
        """The next whole message: its type, its id, its flags and a reader of its body."""
        while True:
            frame = self.read_frame()
            _, kind, sender, trans_id, flags = struct.unpack_from(">IIIiI", frame)
            if kind not in (CALL, REPLY, SEND):
                continue
            body = self.chunks.pop((kind, sender, trans_id), b"") + frame[20:]
            if flags & MORE:
                self.chunks[kind, sender, trans_id] = body
                continue
            return kind, trans_id, flags, Reader(zlib.decompress(body) if flags & COMPRESSED else body)

    def call(self, name, *arguments):
        awaited = self.send(CALL, name, *arguments)
        while True:
            kind, trans_id, flags, body = self.receive()
            if kind == REPLY and trans_id == awaited:
                return "error: " + body.text() if flags & ERROR else body.values()[0]


def main():
    vorkel, program = sys.argv[1], sys.argv[2:]
    with socket.create_server(("127.0.0.1", 0)) as server:
        environment = dict(os.environ, VORKEL_RUNNERID=str(SERVER), VORKEL_APPID=str(APPLICATION),
                           VORKEL_RECORD="0", VORKEL_PORT=str(server.getsockname()[1]))
        process = subprocess.Popen([vorkel, "inject", "--", *program], env=environment)
        try:
            server.settimeout(30)
            stream, _ = server.accept()
            stream.settimeout(30)
            connection = Connection(stream)
            print("name:", connection.shake_hands())
            # While it starts, the program waits for initDone and answers calls already.
            connection.send(SEND, "objectDescriptorData", b"")
            connection.send(SEND, "initDone")
            print("process id is right:", connection.call("getPID") == process.pid)
            print("arguments:", connection.call("autInfo", "arguments")[1:])
            connection.call("setError", "it went wrong")
            print("last error:", connection.call("getLastError"))
        finally:
            process.terminate()
            process.wait()


if __name__ == "__main__":
    main()
