"""Takes what is sent to an address, and keeps it: receiver.py ADDRESS FILE

Prints the port where it listens, and ends when the sender has.
"""
import shutil
import socket
import sys

address, path = sys.argv[1:]
with socket.create_server((address, 0)) as server:
    print(server.getsockname()[1], flush=True)
    sender, _ = server.accept()
# Unbuffered: the size of the file tells at any time how much has come.
with sender, sender.makefile('rb', buffering=0) as stream, open(path, 'wb', buffering=0) as file:
    shutil.copyfileobj(stream, file)
