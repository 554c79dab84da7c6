#!/usr/bin/env python3
"""Runs the Windows programs under Wine: bridge_test.py BUILD_DIR NORVANE_BRIDGE PROGRAMS_DIR.

BUILD_DIR holds test-simulator.exe and test-transport.exe and gets Wine's directory; PROGRAMS_DIR holds norvane-cli and
norvane-sim for this system.
"""

import os
import queue
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
SCENARIO = ROOT / "tests" / "data" / "scenarios" / "short-jet.json"
BUILD, BRIDGE, PROGRAMS = (Path(argument).resolve() for argument in sys.argv[1:4])
PATIENCE_S = 60

READ, END = 1, 0
ANSWERED_WELL, REFUSED = 1, 0


class Program:
    """A program that runs until the test ends it; its lines are read as they come."""

    def __init__(self, *command):
        self.process = subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE, stdin=subprocess.DEVNULL,
                                        env=Wine.environment, text=True, errors="replace")
        self.lines = queue.Queue()
        threading.Thread(target=self.collect, daemon=True).start()

    def collect(self):
        for line in self.process.stdout:
            self.lines.put(line.strip())

    def await_line(self, beginning):
        """The rest of the next line that begins so."""
        end = time.monotonic() + PATIENCE_S
        while True:
            line = self.lines.get(timeout=max(0.0, end - time.monotonic()))
            if line.startswith(beginning):
                return line[len(beginning):]

    def kill(self):
        self.process.kill()
        self.process.wait()


class Wine:
    """A display and a Wine directory of the test's own."""

    environment = dict(os.environ)

    @classmethod
    def start(cls):
        reading, writing = os.pipe()
        cls.display = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "640x480x24", "-nolisten", "tcp"],
                                       pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            display = ":" + number.readline().strip()
        cls.environment |= {"DISPLAY": display, "WINEPREFIX": str(BUILD / "wine"), "WINEDEBUG": "-all",
                            "WINEDLLOVERRIDES": "mscoree,mshtml="}
        if not (BUILD / "wine" / "system.reg").exists():
            subprocess.run(["wine", "wineboot", "-i"], env=cls.environment, timeout=300, check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    @classmethod
    def stop(cls):
        subprocess.run(["wineserver", "-k"], env=cls.environment, timeout=60, check=False)
        cls.display.terminate()
        cls.display.wait()


def frame(offset, size, sequence=1):
    """A request frame with one read."""
    records = struct.pack("<IIII", READ, offset, size, 1) + bytes(size) + struct.pack("<I", END)
    return struct.pack("<II", sequence, len(records)) + records


def exchange(link, request):
    """The answer to a request frame: its number, or "closed", or "silence"."""
    try:
        link.sendall(request)
        head = link.recv(12, socket.MSG_WAITALL)
        if len(head) < 12:
            return "closed"
        _, answer, length = struct.unpack("<III", head)
        link.recv(length, socket.MSG_WAITALL)
        return answer
    except TimeoutError:
        return "silence"
    except ConnectionError:
        return "closed"


class BridgeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        Wine.start()

    @classmethod
    def tearDownClass(cls):
        Wine.stop()

    def setUp(self):
        self.directory = Path(tempfile.mkdtemp(prefix="norvane-bridge-"))
        self.addCleanup(shutil.rmtree, self.directory)

    def start(self, *command):
        program = Program(*command)
        self.addCleanup(program.process.stdout.close)
        self.addCleanup(program.kill)
        return program

    def start_simulator(self, *arguments):
        simulator = self.start("wine", BUILD / "test-simulator.exe", *arguments)
        simulator.await_line("ready")
        return simulator

    def start_bridge(self):
        # One port for the bridge's whole life: it must get it back each time a simulator comes.
        with socket.create_server(("127.0.0.1", 0)) as free:
            port = free.getsockname()[1]
        return self.start("wine", BRIDGE, "--listen", f"127.0.0.1:{port}")

    @staticmethod
    def address_of(bridge):
        return bridge.await_line("listening on ").split()[0]

    def cli(self, home, *arguments):
        return subprocess.run([PROGRAMS / "norvane-cli", "--home", self.directory / home, *arguments], text=True,
                              capture_output=True, timeout=3 * PATIENCE_S, check=False)

    def connect(self, address):
        host, port = address.split(":")
        link = socket.create_connection((host, int(port)), timeout=2.5)
        self.addCleanup(link.close)
        return link

    def test_every_result_of_the_transport(self):
        ran = subprocess.run(["wine", BUILD / "test-transport.exe"], env=Wine.environment, capture_output=True, text=True,
                             errors="replace", timeout=120, check=False)
        self.assertEqual(ran.returncode, 0, ran.stdout + ran.stderr)
        self.assertIn("test-transport: passed", ran.stdout)

    def fly(self, home, bridged):
        """The log of one flight, straight from the stand-in or through window messages and the bridge."""
        stand_in = self.start(PROGRAMS / "norvane-sim", "fly", "--scenario", SCENARIO, "--step", "500", "--listen",
                              "127.0.0.1:0")
        address = stand_in.await_line("listening on ")
        if bridged:
            self.start_simulator("--from", address)
            address = self.address_of(self.start_bridge())
        self.assertEqual(self.cli(home, "settings", "set", "ACARS_Date", "0").returncode, 0)
        flown = self.cli(home, "--sim", address, "fly", "--time-scale", "1000", "--flight-number", "123", "--aircraft", "B738")
        self.assertEqual(flown.returncode, 0, flown.stdout + flown.stderr)
        return (self.directory / home / "logs" / "My Flight Log.txt").read_bytes()

    def test_a_flight_through_window_messages_is_the_same(self):
        straight = self.fly("straight", bridged=False)
        self.assertEqual(straight.count(b"|"), 52, straight)
        self.assertEqual(self.fly("bridged", bridged=True), straight)

    def test_what_clients_see(self):
        bridge = self.start_bridge()
        bridge.await_line("waiting for a simulator")
        self.start_simulator("--vanish-at", "2")
        address = self.address_of(bridge)
        link = self.connect(address)
        self.assertEqual(exchange(link, frame(0x3308, 4)), ANSWERED_WELL)
        self.assertEqual(exchange(link, frame(0xFFFF, 4)), REFUSED, "beyond the area: never shown to the simulator")
        self.assertEqual(exchange(link, frame(0x3308, 4)), "closed", "the simulator died in its second message")
        bridge.await_line("the simulator is gone")
        with self.assertRaises(ConnectionRefusedError):
            self.connect(address)
        flown = self.cli("nobody", "--sim", address, "fly", "--give-up", "1")
        self.assertEqual(flown.returncode, 3, "no simulator: " + flown.stdout + flown.stderr)
        self.assertIn("Unable to connect to FSUIPC.", flown.stderr)

        simulator = self.start_simulator("--refuse", "--class", "FS98MAIN")
        self.assertEqual(exchange(self.connect(self.address_of(bridge)), frame(0x3308, 4)), REFUSED)
        simulator.kill()
        self.start_simulator("--hang-ms", "6000")
        link = self.connect(self.address_of(bridge))
        self.assertEqual(exchange(link, frame(0x3308, 4)), "silence")
        bridge.await_line("the simulator does not answer")


if __name__ == "__main__":
    if not (PROGRAMS / "norvane-cli").exists():
        sys.exit(f"bridge_test.py: no norvane-cli in {PROGRAMS}; build the preset ci first")
    unittest.main(argv=sys.argv[:1], verbosity=2)
