#!/usr/bin/python3
"""Flies a circuit in FlightGear, without a screen, while norvane-cli logs it: fly_flightgear.py PROGRAM_DIRECTORY [OPTIONS]

The aircraft starts its engine on the runway, releases the brake, flies around the field, lands and sets the brake; then the row must
be in the log. --aircraft chooses it: the default one, on wheels, skis or floats, which start on the sea, or the UFO, which tells of no
ground at all; --lat, --lon and --heading start it elsewhere. With --killed FlightGear is killed on the way and started again in the
air where it was: Norvane must have paused and taken the flight up again.

Needs FlightGear (scripts/install_flightgear installs it) and some ten minutes. Everything else goes to a temporary directory.
"""

import argparse
import math
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PORT = 5401
LINK = "127.0.0.1:18338"
# The pilot's own name for where the aircraft starts.
FIELD = "HERE"
# FlightGear starts on runway 20 of BIKF when it is told nothing; floats lie on the sea north of it, against the wind.
ON_WATER = {"lat": 64.15, "lon": -22.45, "heading": 150}
# Every variant in FlightGear's own data; where it starts.
AIRCRAFT = {"c172p": {}, "c172p-amphibious": {}, "c172p-float": ON_WATER, "c172p-ski": {}, "c172p-bush26": {}, "c172p-bush36": {}, "ufo": {}}
FLIGHTGEAR = [
    "dbus-run-session", "xvfb-run", "-a", "-s", "-screen 0 128x128x24", "/usr/games/fgfs",
    f"--telnet=socket,bi,60,localhost,{PORT},tcp", "--disable-terrasync", "--disable-sound", "--geometry=64x64",
    "--prop:/sim/rendering/draw-mask/terrain=false", "--prop:/sim/rendering/draw-mask/aircraft=false",
    "--disable-real-weather-fetch", "--disable-ai-traffic", "--disable-splash-screen", "--timeofday=noon",
]
START_AT_MOST_S = 240
FLIGHT_AT_MOST_S = 900
METRES_A_DEGREE = 111120
FEET_A_METRE = 3.28084
CIRCUIT_FT = 500
GLIDE = math.tan(math.radians(3.5))
# Where the circuit turns, metres along the runway from the start of the take-off run, and to its right.
UPWIND_END_M, DOWNWIND_M, DOWNWIND_END_M, BASE_END_M, TOUCHDOWN_M = 2600, 1500, -1800, 450, 400

STATE = {
    "lat": "/position/latitude-deg", "lon": "/position/longitude-deg", "agl": "/position/altitude-agl-ft",
    "alt": "/position/altitude-ft", "ground": "/position/ground-elev-ft", "ias": "/velocities/airspeed-kt",
    "pitch": "/orientation/pitch-deg", "roll": "/orientation/roll-deg", "heading": "/orientation/heading-deg",
    "speed": "/velocities/groundspeed-kt", "climb": "/velocities/vertical-speed-fps", "yaw rate": "/orientation/yaw-rate-degps",
    "pitch rate": "/orientation/pitch-rate-degps", "roll rate": "/orientation/roll-rate-degps",
}
THROTTLE = "/controls/engines/current-engine/throttle"
MIXTURE = "/controls/engines/current-engine/mixture"
ENGINE_AT_MOST_S = 40
# How fast, high and far the UFO flies.
UFO_MPS, UFO_FT, UFO_END_M = 60, 300, 1500


def within(value, low, high):
    return max(low, min(high, value))


def turn(degrees):
    """The shorter way round."""
    return (degrees + 180) % 360 - 180


class Simulator:
    """FlightGear, and its properties."""

    def __init__(self, directory, *arguments):
        environment = {**os.environ, "LIBGL_ALWAYS_SOFTWARE": "1", "FG_HOME": str(directory / "fg")}
        (directory / "fg").mkdir(exist_ok=True)
        subprocess.run(["dbus-uuidgen", "--ensure"], check=True)
        self.log = open(directory / "fgfs.log", "ab")
        self.process = subprocess.Popen([*FLIGHTGEAR, *arguments], env=environment, stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log,
                                        start_new_session=True)
        self.socket = None
        try:
            self.wait(directory)
        except BaseException:
            self.kill()
            raise

    def wait(self, directory):
        end = time.time() + START_AT_MOST_S
        while not self.is_ready():
            if time.time() > end or self.process.poll() is not None:
                raise SystemExit("FlightGear does not start; see the end of its log:\n"
                                 + (directory / "fgfs.log").read_text(errors="replace")[-2000:])
            time.sleep(1)

    def is_ready(self):
        try:
            if self.socket is None:
                self.socket = socket.create_connection(("localhost", PORT), 2)
                self.socket.settimeout(10)
                self.answers = self.socket.makefile("r", newline="\r\n")
                self.socket.sendall(b"data\r\n")
            return self.get("/sim/signals/fdm-initialized") == "true"
        except OSError:
            self.socket = None
            return False

    def kill(self):
        """At once, with all that was started for it."""
        if self.socket is not None:
            self.socket.close()
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()

    def get(self, path):
        self.socket.sendall(f"get {path}\r\n".encode())
        return self.answers.readline().rstrip("\r\n")

    def put(self, values):
        self.socket.sendall("".join(f"set {path} {value}\r\n" for path, value in values.items()).encode())

    def state(self):
        self.socket.sendall("".join(f"get {path}\r\n" for path in STATE.values()).encode())
        texts = [self.answers.readline().strip() for _ in STATE]
        return {name: {"true": 1.0, "false": 0.0}.get(text) if text in ("true", "false") else float(text or 0)
                for name, text in zip(STATE, texts)}


class Pilot:
    """Knows where the flight began."""

    BRAKE = "/controls/gear/brake-parking"
    # Slower for so many looks, it stands.
    STANDING_KT, STANDING_LOOKS = 0.5, 20

    def __init__(self, simulator, on_water=False):
        self.simulator = simulator
        start = simulator.state()
        self.origin = start["lat"], start["lon"]
        self.runway = start["heading"]
        self.field_ft = start["ground"]
        self.standing_ft = start["agl"]
        self.on_water = on_water
        self.stage = "take-off"
        self.trim = 0.0
        self.before = start
        self.steady = 0

    def start_engine(self):
        pass

    def place(self, now):
        """Metres along the runway and to its right."""
        north = (now["lat"] - self.origin[0]) * METRES_A_DEGREE
        east = (now["lon"] - self.origin[1]) * METRES_A_DEGREE * math.cos(math.radians(self.origin[0]))
        course = math.radians(self.runway)
        return north * math.cos(course) + east * math.sin(course), east * math.cos(course) - north * math.sin(course)

    def touches(self, now):
        return now["agl"] < self.standing_ft + (2 if self.on_water else 0.5)

    def stands(self, now):
        # Floats drift with the wind.
        self.steady = self.steady + 1 if now["speed"] < (5 if self.on_water else self.STANDING_KT) else 0
        return self.steady > self.STANDING_LOOKS

    def fly(self, until):
        """Until a stage of that name begins."""
        end = time.time() + FLIGHT_AT_MOST_S
        told = None
        while self.stage != until:
            now = self.simulator.state()
            self.step(now)
            if self.stage != told:
                told = self.stage
                print(f"{told}: {now['agl']:.0f} ft above ground, {now['ias']:.0f} kt", flush=True)
            if time.time() > end:
                raise SystemExit(f"the flight does not end; it was at {self.stage}, {now}")
            self.before = now
            time.sleep(0.02)


class Ufo_Pilot(Pilot):
    """Rises, flies straight on, sinks and stops; "take-off", "downwind" and "landing" are its stages."""

    def step(self, now):
        along, _ = self.place(now)
        height = now["agl"] - self.standing_ft
        wanted = {"take-off": UFO_FT, "downwind": UFO_FT}.get(self.stage, 0)
        pitch = within((wanted - height) * 0.1, -12, 15)
        throttle = 0 if self.stage == "landing" and height < 5 else 1
        self.simulator.put({"/engines/engine/speed-max-mps": UFO_MPS, "/controls/flight/aileron": 0,
                            "/controls/engines/engine/throttle": throttle,
                            "/controls/flight/elevator": within((now["pitch"] - pitch) * 0.1, -1, 1)})
        if self.stage == "take-off" and height > UFO_FT - 50:
            self.stage = "downwind"
        elif self.stage == "downwind" and along > UFO_END_M:
            self.stage = "landing"
        elif self.stage == "landing" and throttle == 0 and self.stands(now):
            self.stage = "standing"


class Cessna_Pilot(Pilot):
    """Flies the circuit by proportional control; to the right when seen along the runway."""

    BRAKE = "/sim/model/c172p/brake-parking"

    def start_engine(self):
        covers = ("chock", "cowl-plugs-visible", "pitot-cover-visible", "tiedownL-visible", "tiedownR-visible", "tiedownT-visible")
        # The swell breaks a wing before the engine runs, and then the floats go in circles.
        broken = ("settings/damage", "wing-damage/left-wing", "wing-damage/right-wing")
        self.simulator.put({**{f"/sim/model/c172p/securing/{cover}": 0 for cover in covers}, **{f"/fdm/jsbsim/{part}": 0 for part in broken},
                            "/sim/model/c172p/cockpit/control-lock-placed": 0, "/controls/switches/magnetos": 3, THROTTLE: 0.2,
                            MIXTURE: 0.95, "/controls/switches/master-bat": 1, "/controls/switches/master-alt": 1,
                            "/controls/engines/engine[0]/primer-lever": 0, "/controls/engines/engine[0]/primer": 3,
                            "/engines/active-engine/carb_ice": 0, "/engines/active-engine/carb_icing_allowed": "false",
                            "/engines/active-engine/auto-start": 1, "/controls/switches/starter": 1})
        end = time.time() + ENGINE_AT_MOST_S
        while self.simulator.get("/engines/active-engine/running") != "true":
            if time.time() > end:
                raise SystemExit("the engine does not start")
            time.sleep(0.5)
        self.simulator.put({"/controls/switches/starter": 0, "/engines/active-engine/auto-start": 0})

    def step(self, now):
        along, right = self.place(now)
        height = now["alt"] - self.field_ft
        if self.stage == "take-off":
            self.roll_along(now, right, throttle=1, pitch=self.take_off_pitch(now))
            self.stage = "upwind" if now["agl"] > 50 else self.stage
        elif self.stage == "upwind":
            self.climb_and_turn(now, height, self.runway - within(right * 0.05, -20, 20))
            self.stage = "crosswind" if along > UPWIND_END_M else self.stage
        elif self.stage == "crosswind":
            self.climb_and_turn(now, height, self.runway + 90)
            self.stage = "downwind" if right > DOWNWIND_M - 600 else self.stage
        elif self.stage == "downwind":
            self.climb_and_turn(now, height, self.runway + 180 + within((right - DOWNWIND_M) * 0.03, -20, 20))
            self.stage = "base" if along < DOWNWIND_END_M else self.stage
        elif self.stage == "base":
            self.climb_and_turn(now, height, self.runway + 270)
            self.stage = "final" if right < BASE_END_M else self.stage
        elif self.stage == "final":
            wanted = (TOUCHDOWN_M - along) * GLIDE * FEET_A_METRE
            self.follow_glide(now, within(wanted, 0, CIRCUIT_FT), self.runway - within(right * 0.08, -40, 40))
            self.stage = "flare" if now["agl"] < 22 else self.stage
        elif self.stage == "flare":
            self.control(now, pitch=within(2 + (20 - now["agl"]) * 0.25, 1, 6.5), bank=self.bank(now, self.runway - right * 0.05, 8))
            self.simulator.put({THROTTLE: 0})
            self.stage = "landing run" if self.touches(now) else self.stage
        elif self.stage == "landing run":
            brakes = 0.4 if now["ias"] < 45 else 0
            self.simulator.put({"/controls/gear/brake-left": brakes, "/controls/gear/brake-right": brakes})
            if self.on_water:
                # No brake holds it there against an engine that idles.
                self.simulator.put({MIXTURE: 0})
            self.roll_along(now, right, throttle=0, pitch=0)
            self.stage = "standing" if self.stands(now) else self.stage

    def take_off_pitch(self, now):
        if self.on_water:
            # Nose up, or the floats dig in and swerve.
            return 14 if now["ias"] < 54 and self.touches(now) else 7
        return 8 if now["ias"] > 52 else 0

    def roll_along(self, now, right, throttle, pitch):
        # On the sea there is no line to keep, and a float that is pressed to a side digs in.
        error = turn(self.runway - (0 if self.on_water else within(right * 0.4, -8, 8)) - now["heading"])
        rudder = within(error * 0.04 - now["yaw rate"] * 0.03, -1, 1)
        self.control(now, pitch, bank=0)
        self.simulator.put({THROTTLE: throttle, "/controls/flight/rudder": rudder, "/controls/gear/water-rudder": int(now["ias"] < 25)})

    def climb_and_turn(self, now, height, heading):
        error = CIRCUIT_FT - height
        pitch = within(error * 0.03, -4, 7) + within((now["ias"] - 72) * 0.3, -6, 0)
        throttle = 1 if error > 60 else within(0.62 + (85 - now["ias"]) * 0.02 + error * 0.003, 0.2, 1)
        self.control(now, pitch + 1, self.bank(now, heading, 22))
        self.simulator.put({THROTTLE: throttle, "/controls/flight/rudder": 0})

    def follow_glide(self, now, wanted, heading):
        error = wanted - (now["alt"] - self.field_ft)
        climb_fps = within(-now["speed"] * 1.688 * GLIDE + error * 0.08, -14, 3) if wanted < CIRCUIT_FT else error * 0.08
        pitch = within((climb_fps - now["climb"]) * 0.6, -6, 6) + within((now["ias"] - 58) * 0.5, -4, 0)
        self.control(now, pitch, self.bank(now, heading, 20))
        self.simulator.put({THROTTLE: within(0.35 + (68 - now["ias"]) * 0.05, 0, 1), "/controls/flight/rudder": 0})

    def bank(self, now, heading, most):
        return within(turn(heading - now["heading"]) * 1.0, -most, most)

    def control(self, now, pitch, bank):
        error = pitch - now["pitch"]
        airborne = 1.0 if now["agl"] > self.standing_ft + 10 else 0.0
        self.trim = within(self.trim + error * 0.0006 * airborne, -0.4, 0.4)
        elevator = -(error * 0.03 - now["pitch rate"] * 0.015) - self.trim
        level = 0.06 if self.on_water and self.touches(now) else 0.02
        aileron = (bank - now["roll"]) * level - now["roll rate"] * 0.008
        self.simulator.put({"/controls/flight/elevator": within(elevator, -0.8, 0.5),
                            "/controls/flight/aileron": within(aileron, -0.6, 0.6)})


class Program:
    """One of Norvane's, its output in a file."""

    def __init__(self, output, *arguments):
        self.output = output
        self.process = subprocess.Popen([str(each) for each in arguments], stdout=open(output, "wb"), stderr=subprocess.STDOUT)

    def text(self):
        return self.output.read_text("utf-8", "replace")

    def wait_for(self, text, at_most_s):
        end = time.time() + at_most_s
        while text not in self.text():
            if time.time() > end:
                raise SystemExit(f"{self.output.name} lacks \"{text}\":\n{self.text()}")
            time.sleep(0.2)

    def end(self):
        self.process.terminate()
        self.process.wait()


def in_the_air(now):
    return ["--in-air", f"--lat={now['lat']}", f"--lon={now['lon']}", f"--altitude={now['alt']}", f"--vc={max(now['ias'], 75)}",
            f"--heading={now['heading']}"]


def at(start):
    return [f"--{name}={value}" for name, value in start.items()]


def fly(programs, directory, aircraft, start, killed):
    home = directory / "home"
    shutil.copytree(programs, home)
    started, simulators = [], []
    try:
        link = Program(directory / "norvane-sim.txt", home / "norvane-sim", "flightgear", f"localhost:{PORT}", "--listen", LINK)
        started.append(link)
        simulator = Simulator(directory, f"--aircraft={aircraft}", *at(start))
        simulators.append(simulator)
        link.wait_for("listening on", 30)
        pilot = (Ufo_Pilot if aircraft == "ufo" else Cessna_Pilot)(simulator, aircraft == "c172p-float")
        simulator.put({pilot.BRAKE: 1})
        pilot.start_engine()
        # The world file gives the airport's highest place, the runway lies lower.
        (home / "bin" / "fs9UD.wld").write_text(f"{pilot.origin[0]}|{pilot.origin[1]}|{pilot.field_ft:.0f}|{FIELD}|The field\r\n")
        command = [home / "norvane-cli", "--home", home, "--settings", directory / "settings.sqlite", "--sim", LINK]
        norvane = Program(directory / "norvane-cli.txt", *command, "fly", "--new", "--flight-number", "101")
        started.append(norvane)
        time.sleep(5)
        simulator.put({pilot.BRAKE: 0})
        norvane.wait_for("\nOUT ", 20)
        if killed:
            pilot.fly(until="downwind")
            last = pilot.before
            simulator.kill()
            print("FlightGear is killed", flush=True)
            norvane.wait_for("The flight is paused", 60)
            simulator = pilot.simulator = Simulator(directory, f"--aircraft={aircraft}", *in_the_air(last))
            simulators.append(simulator)
            pilot.before = simulator.state()
            pilot.start_engine()
        pilot.fly(until="standing")
        if killed:
            norvane.wait_for("The flight goes on.", 60)
        simulator.put({pilot.BRAKE: 1})
        status = norvane.process.wait(timeout=60)
        rows = subprocess.run([str(each) for each in command] + ["log", "rows"], capture_output=True, text=True, check=True).stdout
        print(rows)
        told = re.findall(r"^(OUT|OFF|ON|IN) \d{4}Z ", norvane.text(), re.MULTILINE)
        if told != ["OUT", "OFF", "ON", "IN"]:
            raise SystemExit(f"the flight was told as {told}")
        if status != 0 or "|101|" not in rows:
            raise SystemExit("the flight is not in the log")
    finally:
        for simulator in simulators:
            simulator.kill()
        for program in started:
            program.end()
            print(program.text())


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("programs", type=Path, metavar="PROGRAM_DIRECTORY", help="where norvane-cli and norvane-sim are")
    parser.add_argument("--aircraft", choices=AIRCRAFT, default="c172p")
    for name in ("lat", "lon", "heading"):
        parser.add_argument(f"--{name}", type=float, help="where to start instead")
    parser.add_argument("--killed", action="store_true", help="kill FlightGear on the way and start it again in the air")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="norvane-flightgear-") as directory:
        start = {**AIRCRAFT[options.aircraft], **{name: getattr(options, name) for name in ("lat", "lon", "heading")
                                                  if getattr(options, name) is not None}}
        fly(options.programs.resolve(), Path(directory), options.aircraft, start, options.killed)
    print("done")


if __name__ == "__main__":
    sys.exit(main())
