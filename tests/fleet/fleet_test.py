#!/usr/bin/env python3
"""A fleet of devices, and faults on demand, with a scripted ACS: fleet_test.py KOVACTL [TestCase...]"""
import glob
import http.client
import json
import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse

from acs import Acs, assign, get

KOVACTL = sys.argv[1]
LEASE = "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.DHCPLeaseTime"
SERIALS = [f"T-{ordinal:05}" for ordinal in range(1, 7)]


def kovactl(*words, status=0):
    done = subprocess.run([KOVACTL, "--json", *words], capture_output=True, text=True,
                          env=dict(os.environ, KOVA_FEED="off", ASAN_OPTIONS="detect_leaks=0"))
    assert status in (None, done.returncode), f"{words}: {done.returncode} {done.stdout} {done.stderr}"
    return json.loads(done.stdout)


def wait(condition, what, seconds=60):
    deadline = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < deadline, what
        time.sleep(0.1)


class FleetTest(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory(prefix="kova-fleet-test-")
        self.addCleanup(self.scratch.cleanup)
        self.place = self.scratch.name + "/fleet"
        self.acs = Acs()
        self.addCleanup(self.acs.close)

    def fleet(self, command, *words, status=0):
        return kovactl("fleet", command, "--dir", self.place, *words, status=status)

    def up(self, count, **options):
        self.addCleanup(lambda: os.path.exists(self.place + "/kova-fleet") and self.fleet("remove"))
        return self.fleet("up", str(count), "--serial", "T-", "--acs", self.acs.url, **options)

    def processes(self):
        found = []
        for name in glob.glob(self.place + "/*/run/*.pid"):
            with open(name) as file:
                found.append(int(file.read()))
        return sorted(found)

    def await_informed(self, count):
        wait(lambda: self.fleet("status")["informed"] == count, "all are informed")

    def test_comes_up_grows_and_comes_back_with_nothing_lost(self):
        self.assertEqual(self.up(4)["up"], 4)
        self.await_informed(4)
        first = self.processes()
        self.assertEqual(self.up(6)["up"], 6)
        self.assertTrue(set(first) < set(self.processes()), "those that run are left alone")
        self.await_informed(6)
        told = {session.inform.texts("SerialNumber")[0] for session in self.acs.sessions}
        self.assertEqual(told, set(SERIALS))
        macs = [answer["parameters"][0]["value"] for answer in self.fleet("get", "*.LANHostConfigManagement.MACAddress"
                ).values() if "parameters" in answer]
        self.assertEqual(len(macs), len(set(macs)))

        self.fleet("exec", "--", "set", LEASE + "=4567")
        refused = self.fleet("exec", "--", "set", LEASE + "=1", status=1)
        self.assertEqual([answer["faults"][0]["code"] for answer in refused.values()], [9007] * 6)
        for process in self.processes()[::3]:
            os.kill(process, signal.SIGKILL)
        left = lambda: self.fleet("status", status=None)
        wait(lambda: left()["up"] + left()["agents"] == 8, "a third of twelve processes is gone")
        self.up(6)
        status = self.fleet("status")
        self.assertEqual((status["up"], status["agents"], status["informed"]), (6, 6, 6))
        values = {serial: answer["parameters"][0]["value"] for serial, answer in self.fleet("get", LEASE).items()}
        self.assertEqual(values, dict.fromkeys(SERIALS, "4567"))
        self.assertEqual(kovactl("--device", f"{self.place}/T-00003", "device", "status")["serial"], "T-00003")

    def test_touches_nothing_else(self):
        os.mkdir(self.place)
        other = self.place + "/T-00001"
        open(other, "w").close()
        self.assertIn("nothing in it is touched", self.fleet("up", "2", status=1)["error"])
        self.fleet("remove", status=1)
        self.assertEqual(os.listdir(self.place), ["T-00001"])
        os.remove(other)
        self.assertEqual(self.up(1)["up"], 1)
        open(self.place + "/notes", "w").close()
        self.fleet("remove")
        self.assertEqual(os.listdir(self.place), ["notes"])

    def test_does_wrong_on_demand(self):
        self.up(1)
        self.await_informed(1)
        device = self.place + "/T-00001"

        def fault(*words):
            return kovactl("--device", device, "device", "fault", *words)["faults"]

        def session(status=0):
            return kovactl("--device", device, "inform", "--wait", status=status)["outcome"]

        self.assertEqual(len(fault("--fail", "InternetGatewayDevice.LANDevice.", "--deaf")), 2)
        self.assertEqual(len(kovactl("--device", device, "device", "status")["faults"]), 2)
        self.acs.script = [get(LEASE), assign({LEASE: ("4000", "unsignedInt")})]
        session()
        self.assertEqual([answer.fault() for answer in self.acs.sessions[-1].answers], [(9002, {}), (9003, {LEASE: 9002})])
        url = urllib.parse.urlsplit(kovactl("--device", device, "device", "status")["agent"]["connectionRequestURL"])
        connection = http.client.HTTPConnection("127.0.0.1", url.port, timeout=60)
        connection.request("GET", url.path)
        self.assertRaises(http.client.RemoteDisconnected, connection.getresponse)
        self.assertEqual(len(fault("--clear", "--break-after", "2")), 1)
        self.acs.script = [get(LEASE)]
        self.assertIn("broken off after message 2", session(status=1))
        fault("--clear", "--reboot-after", "1", "--slow", "1")
        before = len(self.acs.sessions)
        self.assertIn("rebooted after message 1", session(status=1))
        self.acs.session("1 BOOT", after=before)
        self.assertEqual(fault(), [], "a boot clears them")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[1:], verbosity=2)
