"""Prints a loopback address that nobody else uses, and holds it until standard input ends.

Whoever can bind port 8002 of an address has it; the tests keep to the same rule.
"""
import random
import signal
import socket
import sys


def lease():
    while True:
        # 127.0.x.y is everybody's
        address = f'127.{random.randint(1, 255)}.{random.randint(0, 255)}.{random.randint(1, 254)}'
        holder = socket.socket()
        try:
            holder.bind((address, 8002))
            return holder, address
        except OSError:
            holder.close()


signal.signal(signal.SIGINT, signal.SIG_DFL)  # no word when it is interrupted
held, leased = lease()
print(leased, flush=True)
sys.stdin.read()
