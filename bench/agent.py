#!/usr/bin/env python3
"""Measures the agent of one virtual device with the scripted ACS of the tests.

    bench/agent.py BUILD [--sessions N] [--idle SECONDS]

BUILD is the directory of a release build. Prints what the waiting processes of a device take, the processor time of a
session as a multiple of that of `kovactl get`, sessions a second (each asked for when the last one ends), and the memory
of the agent after 100, 1,000, 10,000, ... sessions."""
import argparse
import os
import resource
import shutil
import subprocess
import sys
import tempfile
import threading
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, ROOT + "/tests/agent")
from acs import Acs, get  # noqa: E402

TICK = os.sysconf("SC_CLK_TCK")


def pss(pid):
    """In KiB."""
    with open(f"/proc/{pid}/smaps_rollup") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("Pss:"))


def cpu(pid):
    """Seconds, of the process and the children that have ended."""
    with open(f"/proc/{pid}/stat") as file:
        return sum(map(int, file.read().rsplit(")", 1)[1].split()[11:15])) / TICK


def waiting_cpu(pid):
    """Seconds, exactly, of a process of one thread."""
    with open(f"/proc/{pid}/schedstat") as file:
        return int(file.read().split()[0]) / 1e9


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("build")
    options.add_argument("--sessions", type=int, default=200)
    options.add_argument("--idle", type=float, default=20)
    given = options.parse_args()
    directory = tempfile.mkdtemp(prefix="kova-bench-")
    environment = dict(os.environ, KOVA_DEVICE=directory + "/device")
    program = os.path.join(given.build, "bin/kovactl")

    def kovactl(*words):
        subprocess.run([program, *words], env=environment, check=True, stdout=subprocess.DEVNULL)

    def pid(daemon):
        with open(f"{directory}/device/run/{daemon}.pid") as file:
            return int(file.read())

    acs = Acs()
    try:
        kovactl("device", "up", "--acs", acs.url)
        acs.session("0 BOOTSTRAP")
        kovactl("set", "InternetGatewayDevice.ManagementServer.PeriodicInformEnable=0")
        time.sleep(3)
        daemons = {name: pid(name) for name in ("cwmpd", "serviced")}
        for name, process in daemons.items():
            before = waiting_cpu(process)
            time.sleep(given.idle)
            minute = 60 / given.idle * (waiting_cpu(process) - before)
            print(f"{name}, waiting: {pss(process)} KiB PSS, {minute * 1000:.1f} ms of processor time a minute")

        readings = 50
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        for _ in range(readings):
            kovactl("get", "InternetGatewayDevice.DeviceInfo.ProvisioningCode")
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        reading = (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) / readings

        ended = threading.Semaphore(0)
        # When the device is told that there is no more to do it is asked for the next session.
        def end(handler):
            acs.sessions.clear()
            acs.messages.clear()
            acs.heads.clear()
            handler.answer(204)
            ended.release()

        before, begin = {name: cpu(process) for name, process in daemons.items()}, time.monotonic()
        for number in range(1, given.sessions + 1):
            acs.script = [end]
            kovactl("inform")
            if not ended.acquire(timeout=60):
                raise SystemExit("a session does not end")
            if number in (100, 1000, 10000, 100000):
                print(f"after {number} sessions: {pss(daemons['cwmpd'])} KiB PSS", flush=True)
        time.sleep(1)
        elapsed = time.monotonic() - begin - 1
        session = sum(cpu(process) - before[name] for name, process in daemons.items()) / given.sessions
        print(f"a session: {session * 1000:.1f} ms of processor time, {session / reading:.1f} times `kovactl get` "
              f"({reading * 1000:.1f} ms)\n{given.sessions / elapsed:.1f} sessions a second")
    finally:
        subprocess.run([program, "device", "down"], env=environment, stdout=subprocess.DEVNULL)
        acs.close()
        shutil.rmtree(directory)


if __name__ == "__main__":
    main()
