"""Runs a program on a loopback address of its own, and leaves nothing of it behind.

usage: alone.py PROGRAM [ARGUMENT...]

The program finds the address in KORVE_ADDRESS and a folder for its files in KORVE_FOLDER. When it ends, or when this is
interrupted, all that it has started is killed, and the folder is removed. Ends as the program ends; after a signal with
128 and its number. It is not the shell script itself that sees to this: bash may lose a signal or die of a syntax error
when one arrives while it reads a command substitution.
"""
import ctypes
import os
import random
import signal
import socket
import subprocess
import sys
import tempfile

INTERRUPTIONS = {signal.SIGHUP, signal.SIGINT, signal.SIGTERM}
PR_SET_CHILD_SUBREAPER = 36


def lease():
    """Whoever can bind port 8002 of an address has it; the tests keep to the same rule."""
    while True:
        # 127.0.x.y is everybody's
        address = f'127.{random.randint(1, 255)}.{random.randint(0, 255)}.{random.randint(1, 254)}'
        holder = socket.socket()
        try:
            holder.bind((address, 8002))
            return holder, address
        except OSError:
            holder.close()


def end_of(program):
    """Waits until the program ends or an interruption comes; answers the exit code."""
    while program.poll() is None:
        arrived = signal.sigwait(INTERRUPTIONS | {signal.SIGCHLD})
        if arrived in INTERRUPTIONS:
            return 128 + arrived
    return program.returncode if program.returncode >= 0 else 128 - program.returncode


def kill_all(group):
    """Also what the program has left running: it has become a child of this process."""
    try:
        os.killpg(group, signal.SIGKILL)
        while True:
            os.wait()
    except (ProcessLookupError, ChildProcessError):
        pass


def allow(signals):
    signal.pthread_sigmask(signal.SIG_UNBLOCK, signals)


def main(command):
    awaited = INTERRUPTIONS | {signal.SIGCHLD}
    signal.pthread_sigmask(signal.SIG_BLOCK, awaited)
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
    with tempfile.TemporaryDirectory(prefix='korve-demo.') as folder:
        holder, address = lease()
        with holder:
            program = subprocess.Popen(['setpriv', '--pdeathsig', 'KILL', '--', *command], process_group=0,
                                       env=dict(os.environ, KORVE_ADDRESS=address, KORVE_FOLDER=folder),
                                       preexec_fn=lambda: allow(awaited))
            code = end_of(program)
            kill_all(program.pid)
    return code


sys.exit(main(sys.argv[1:]))
