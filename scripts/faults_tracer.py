"""Runs a program, holds it at each of its system calls, and lets somebody decide what comes of it.

By ptrace(2) itself rather than strace(1): a call is known by its place in the whole run, whichever
thread makes it, and what is to happen just before it happens while the thread is held there.
"""

import ctypes
import os
import platform
import re
import shutil
import signal
import subprocess
import sys

TRACEME, POKEUSER, SYSCALL, SETOPTIONS = 0, 6, 24, 0x4200
GETREGSET, SETREGSET, GET_SYSCALL_INFO = 0x4204, 0x4205, 0x420E
GOOD_STOPS, FOLLOW, EXEC, EXITKILL = 1, 2 | 4 | 8, 16, 1 << 20
ALL_THREADS = 0x40000000  # __WALL
ORIG_RAX, RAX, NT_PRSTATUS, NT_ARM_SYSTEM_CALL = 15 * 8, 10 * 8, 1, 0x404
DROP_CAPABILITY, DAC_OVERRIDE, DAC_READ_SEARCH = 24, 1, 2
HANGING = "hanging"

PATH_AT = set("openat mkdirat newfstatat unlinkat renameat renameat2 readlinkat faccessat "
              "faccessat2 statx fchmodat fchmodat2".split())
PATH = set("open mkdir stat lstat rename unlink readlink access statfs chmod rmdir".split())
FD = set("read readv pread64 write writev pwrite64 sendfile copy_file_range ftruncate close fstat "
         "lseek fchmod fchown flock syncfs fsync fdatasync getdents64 fstatfs flistxattr fgetxattr "
         "fsetxattr fremovexattr ioctl fcntl fadvise64".split())
NO_OBJECT = "-"

libc = ctypes.CDLL(None, use_errno=True)
libc.ptrace.argtypes = [ctypes.c_long, ctypes.c_long, ctypes.c_void_p, ctypes.c_void_p]
libc.ptrace.restype = ctypes.c_long


def names_of_calls():
    """{number: name} on this processor, as the compiler knows them."""
    compiler = next(filter(shutil.which, ("clang++-19", "c++", "g++", "cc")), "cc")
    text = subprocess.run([compiler, "-E", "-dM", "-include", "sys/syscall.h", "-xc++", "/dev/null"],
                          capture_output=True, text=True, check=True).stdout
    values = dict(re.findall(r"#define __NR(\w+) (?:__NR)?(\w+)", text))
    return {int(values.get(value, value)): name[1:] for name, value in values.items()
            if name.startswith("_") and values.get(value, value).isdigit()}


class Info(ctypes.Structure):
    """What PTRACE_GET_SYSCALL_INFO says; at the end of a call, `number` is its result."""
    _fields_ = [("kind", ctypes.c_uint8), ("pad", ctypes.c_uint8 * 3), ("arch", ctypes.c_uint32),
                ("ip", ctypes.c_uint64), ("sp", ctypes.c_uint64), ("number", ctypes.c_uint64),
                ("args", ctypes.c_uint64 * 8)]
    BEGIN, END = 1, 2


class Slice(ctypes.Structure):
    _fields_ = [("base", ctypes.c_void_p), ("length", ctypes.c_size_t)]


def ptrace(request, thread, address=0, data=0):
    if libc.ptrace(request, thread, address, data) < 0:
        raise ProcessLookupError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))


def set_number(thread):
    """Makes the call that is about to begin none."""
    if platform.machine() == "x86_64":
        return ptrace(POKEUSER, thread, ORIG_RAX, -1)
    number = ctypes.c_int(-1)
    part = Slice(ctypes.addressof(number), ctypes.sizeof(number))
    return ptrace(SETREGSET, thread, NT_ARM_SYSTEM_CALL, ctypes.addressof(part))


def set_result(thread, value):
    if platform.machine() == "x86_64":
        return ptrace(POKEUSER, thread, RAX, value)
    registers = (ctypes.c_int64 * 34)()
    part = Slice(ctypes.addressof(registers), ctypes.sizeof(registers))
    ptrace(GETREGSET, thread, NT_PRSTATUS, ctypes.addressof(part))
    registers[0] = value
    return ptrace(SETREGSET, thread, NT_PRSTATUS, ctypes.addressof(part))


def start(command, folder, environment, is_traced=False, is_quiet=False):
    """The process of a program without root's right to pass over permissions, in `folder`; what it
    says goes to the files stdout and stderr there, or nowhere."""
    if (process := os.fork()) != 0:
        return process
    try:
        os.chdir(folder)
        for number in (DAC_OVERRIDE, DAC_READ_SEARCH) if os.geteuid() == 0 else ():
            libc.prctl(DROP_CAPABILITY, number, 0, 0, 0)
        for descriptor, name in (0, "/dev/null"), (1, "stdout"), (2, "stderr"):
            flags = os.O_RDONLY if descriptor == 0 else os.O_WRONLY | os.O_CREAT | os.O_APPEND
            os.dup2(os.open("/dev/null" if is_quiet else name, flags, 0o644), descriptor)
        if is_traced:
            ptrace(TRACEME, 0)
            os.kill(os.getpid(), signal.SIGSTOP)
        os.execve(command[0], command, environment)
    finally:
        os._exit(126)


def end_of(process):
    """The status of a process that is not traced; that of the signal, less than 0, if one ended it."""
    return os.waitstatus_to_exitcode(os.waitpid(process, 0)[1])


class Tracer:
    """Knows the objects of calls by their paths relative to `folder`, where the programs run."""

    names = {}

    def __init__(self, folder):
        self.folder = str(folder)
        Tracer.names = Tracer.names or names_of_calls()

    def run(self, command, environment, decide, seconds):
        """The status of a run; HANGING if it took longer. decide(call, object, argument) is asked at each call, and
        returns None, the number of an error, or a signal's to end the process with."""
        self.process = start(command, self.folder, environment, is_traced=True)
        self.results, self.decide, self.is_hanging = {}, decide, False
        os.waitpid(self.process, 0)
        ptrace(SETOPTIONS, self.process, 0, GOOD_STOPS | FOLLOW | EXEC | EXITKILL)
        self.memory = -1
        old = signal.signal(signal.SIGALRM, self.end)
        signal.alarm(seconds)
        try:
            ptrace(SYSCALL, self.process)
            status = self.follow()
        finally:
            signal.alarm(0)
            signal.signal(signal.SIGALRM, old)
            if self.memory >= 0:
                os.close(self.memory)
        return HANGING if self.is_hanging else status

    def end(self, *_):
        self.is_hanging = True
        os.kill(self.process, signal.SIGKILL)

    def follow(self):
        self.others = {}  # The statuses of what is not traced.
        while True:
            thread, status = os.waitpid(-1, ALL_THREADS)
            if not os.WIFSTOPPED(status):
                if thread == self.process:
                    return os.waitstatus_to_exitcode(status)
                self.others[thread] = status
                continue
            number = os.WSTOPSIG(status)
            try:
                if number == signal.SIGTRAP | 0x80:
                    self.at_call(thread)
                is_ours = number in (signal.SIGTRAP, signal.SIGTRAP | 0x80, signal.SIGSTOP)
                ptrace(SYSCALL, thread, 0, 0 if is_ours else number)
            except ProcessLookupError:
                pass  # It was ended meanwhile.

    def at_call(self, thread):
        info = Info()
        ptrace(GET_SYSCALL_INFO, thread, ctypes.sizeof(info), ctypes.addressof(info))
        if info.kind == Info.END and thread in self.results:
            set_result(thread, self.results.pop(thread))
        if info.kind != Info.BEGIN:
            return
        name = self.names.get(info.number, str(info.number))
        verdict = self.decide(name, self.object_of(name, info.args), info.args)
        if isinstance(verdict, signal.Signals):
            os.kill(self.process, verdict)
        elif verdict is not None:
            set_number(thread)
            self.results[thread] = -verdict

    def object_of(self, name, args):
        if name in PATH:
            path = self.text_at(args[0])
        elif name in PATH_AT and (path := self.text_at(args[1])):
            if not path.startswith("/") and (at := ctypes.c_int(args[0]).value) >= 0:
                path = f"{self.path_of(at)}/{path}"
        elif name in PATH_AT or name in FD:
            path = self.path_of(ctypes.c_int(args[0]).value)
        else:
            return NO_OBJECT
        if not path:
            return NO_OBJECT
        name = os.path.relpath(os.path.join(self.folder, path), self.folder)
        return re.sub(r"\.part\d+$", ".part", name)  # Whatever the number of the process.

    def path_of(self, descriptor):
        try:
            return os.readlink(f"/proc/{self.process}/fd/{descriptor}").removesuffix(" (deleted)")
        except OSError:
            return ""

    def text_at(self, address):
        try:
            if self.memory < 0:  # Not sooner: a program that begins gets a memory of its own.
                self.memory = os.open(f"/proc/{self.process}/mem", os.O_RDONLY)
            return os.fsdecode(os.pread(self.memory, 4096, address).partition(b"\0")[0])
        except OSError:
            return ""


if __name__ == "__main__":
    sys.exit("see scripts/faults")
