"""A fence around a program that is used at random: it can read, but not write or call far away.

Landlock, asked for in the child before the program starts: what stands outside of the given folders
cannot be written, made, renamed or removed, and only the given TCP ports can be called.
"""

import ctypes
import os
import sys

CREATE_RULESET, ADD_RULE, RESTRICT_SELF = 444, 445, 446
VERSION = 1
BENEATH, PORT = 1, 2
NO_NEW_PRIVILEGES = 38
# Everything of Landlock's first three versions but to execute, read a file and read a folder.
WRITE = 0x7FFF & ~0b1101
OF_FILES = 1 << 1 | 1 << 14  # write, truncate
CONNECT = 1 << 1
NEEDED_VERSION = 4


class Ruleset(ctypes.Structure):
    _fields_ = [("files", ctypes.c_uint64), ("network", ctypes.c_uint64)]


class Beneath(ctypes.Structure):
    _pack_ = 1
    _fields_ = [("access", ctypes.c_uint64), ("folder", ctypes.c_int32)]


class Port(ctypes.Structure):
    _fields_ = [("access", ctypes.c_uint64), ("port", ctypes.c_uint64)]


def call(*arguments):
    libc = ctypes.CDLL(None, use_errno=True)
    result = libc.syscall(*(ctypes.c_long(each) if isinstance(each, int) else each
                            for each in arguments))
    if result < 0:
        raise OSError(ctypes.get_errno(), "Landlock")
    return result


def available():
    try:
        return call(CREATE_RULESET, 0, 0, VERSION) >= NEEDED_VERSION
    except OSError:
        return False


def fence(folders, ports):
    """For this process and its children, from now on."""
    rules = Ruleset(WRITE, CONNECT)
    ruleset = call(CREATE_RULESET, ctypes.byref(rules), ctypes.sizeof(rules), 0)
    for path in folders:
        folder = os.open(path, os.O_PATH | os.O_CLOEXEC)
        access = WRITE if os.path.isdir(path) else OF_FILES
        call(ADD_RULE, ruleset, BENEATH, ctypes.byref(Beneath(access, folder)), 0)
        os.close(folder)
    for port in ports:
        call(ADD_RULE, ruleset, PORT, ctypes.byref(Port(CONNECT, port)), 0)
    ctypes.CDLL(None).prctl(NO_NEW_PRIVILEGES, 1, 0, 0, 0)
    call(RESTRICT_SELF, ruleset, 0)
    os.close(ruleset)


def main():
    """fence.py FOLDER:FOLDER... PORT,PORT... PROGRAM ARGUMENT...: becomes the program, fenced in."""
    folders, ports, *command = sys.argv[1:]
    fence(folders.split(":"), [int(port) for port in ports.split(",") if port])
    os.execv(command[0], command)


if __name__ == "__main__":
    main()
