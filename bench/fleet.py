#!/usr/bin/env python3
"""Measures a fleet of virtual devices, with an ACS that says as little as it can.

    bench/fleet.py BUILD [--devices N] [--bare N] [--interval SECONDS] [--watch SECONDS] [--dir DIR]

BUILD is the directory of a release build, DIR what does not exist yet. Brings N devices up with their agents and waits
until all are informed; then they inform each INTERVAL for the time of WATCH. --bare: as many without agents, afterwards."""
import argparse
import asyncio
import glob
import json
import multiprocessing
import os
import re
import subprocess
import tempfile
import time

TICK = os.sysconf("SC_CLK_TCK")
ENVELOPE = (b'<?xml version="1.0"?><e:Envelope xmlns:e="http://schemas.xmlsoap.org/soap/envelope/" '
            b'xmlns:cwmp="urn:dslforum-org:cwmp-1-2"><e:Header><cwmp:ID e:mustUnderstand="1">%s</cwmp:ID></e:Header><e:Body>'
            b'<cwmp:InformResponse><MaxEnvelopes>1</MaxEnvelopes></cwmp:InformResponse></e:Body></e:Envelope>')


def serve(url):
    """Takes Informs and has nothing else to say. Tells its URL over the connection."""
    async def converse(reader, writer):
        try:
            while True:
                head = await reader.readuntil(b"\r\n\r\n")
                length = re.search(rb"(?i)content-length: *(\d+)", head)
                body = await reader.readexactly(int(length[1]) if length else 0)
                identity = re.search(rb"ID[^>]*>([^<]*)<", body)
                answer = ENVELOPE % identity[1] if b":Inform>" in body else b""
                writer.write(b"HTTP/1.1 %s\r\nContent-Length: %d\r\n\r\n%s"
                             % (b"200 OK" if answer else b"204 No Content", len(answer), answer))
        except (asyncio.IncompleteReadError, ConnectionError):
            writer.close()

    async def main():
        server = await asyncio.start_server(converse, "127.0.0.1", 0, backlog=4096)
        url.send(f"http://127.0.0.1:{server.sockets[0].getsockname()[1]}/")
        await server.serve_forever()

    asyncio.run(main())


class Fleet:
    def __init__(self, build, directory):
        self.program, self.directory = os.path.join(build, "bin/kovactl"), directory

    def __call__(self, command, *words):
        done = subprocess.run([self.program, "--json", "fleet", command, "--dir", self.directory, *words],
                              capture_output=True, text=True)
        return json.loads(done.stdout)

    def processes(self):
        found = []
        for name in glob.glob(self.directory + "/*/run/*.pid"):
            with open(name) as file:
                found.append(int(file.read()))
        return found

    def memory(self):
        """In KiB."""
        total = 0
        for process in self.processes():
            with open(f"/proc/{process}/smaps_rollup") as file:
                total += int(re.search(r"Pss: *(\d+)", file.read())[1])
        return total

    def descriptors(self):
        return sum(len(os.listdir(f"/proc/{process}/fd")) for process in self.processes())

    def processor(self):
        """Seconds, of the processes and the tasks that have ended."""
        total = 0
        for process in self.processes():
            with open(f"/proc/{process}/stat") as file:
                total += sum(map(int, file.read().rsplit(")", 1)[1].split()[11:15]))
        return total / TICK

    def disk(self):
        """(KiB, files)"""
        def total(*options):
            told = subprocess.run(["du", "-s", *options, self.directory], capture_output=True, text=True).stdout
            return int(told.split()[0])

        return total("-k"), total("--inodes")


def timed(act):
    begin = time.monotonic()
    act()
    return time.monotonic() - begin


def print_stand(fleet, count, seconds, alone):
    memory, (disk, files) = fleet.memory(), fleet.disk()
    print(f"{count} devices up in {seconds:.1f} s, {seconds / count / alone:.2f} times that of one `device up` each\n"
          f"a device: {memory / count:.0f} KiB PSS, {len(fleet.processes()) / count:.1f} processes, "
          f"{fleet.descriptors() / count:.1f} descriptors, {disk / count:.0f} KiB disk, {files / count:.0f} files", flush=True)


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("build")
    options.add_argument("--devices", type=int, default=200)
    options.add_argument("--bare", type=int, default=0)
    options.add_argument("--interval", type=int, default=60)
    options.add_argument("--watch", type=int, default=120)
    options.add_argument("--dir", default=os.path.join(tempfile.gettempdir(), f"kova-bench-{os.getpid()}"))
    given = options.parse_args()
    ours, theirs = multiprocessing.Pipe()
    acs = multiprocessing.Process(target=serve, args=(theirs,), daemon=True)
    acs.start()
    url, fleet = ours.recv(), Fleet(given.build, given.dir)
    print(f"load of the machine at the beginning: {os.getloadavg()[0]:.1f}")
    try:
        alone = []
        for number in range(5):
            device = f"{given.dir}.{number}"
            alone.append(timed(lambda: subprocess.run([fleet.program, "--device", device, "device", "up"],
                                                      stdout=subprocess.DEVNULL, check=True)))
            subprocess.run([fleet.program, "--device", device, "device", "remove"], stdout=subprocess.DEVNULL)
        alone = sorted(alone)[2]

        begin = time.monotonic()
        up = fleet("up", str(given.devices), "--acs", url)
        seconds = time.monotonic() - begin
        if up["failed"]:
            print("failed:", up["failed"])
        while (status := fleet("status"))["informed"] < given.devices and time.monotonic() - begin < 600:
            time.sleep(0.5)
        print(f"{status['informed']} informed after {time.monotonic() - begin:.1f} s")
        print_stand(fleet, given.devices, seconds, alone)

        fleet("exec", "--", "set", f"ManagementServer.PeriodicInformInterval={given.interval}")
        time.sleep(given.interval + 5)
        before = fleet.processor(), fleet.memory(), fleet.descriptors()
        watched = timed(lambda: time.sleep(given.watch))
        after = fleet.processor(), fleet.memory(), fleet.descriptors()
        status = fleet("status")
        print(f"informing every {given.interval} s: {(after[0] - before[0]) / watched:.2f} of a core, "
              f"{status['sessionsPerMinute']} sessions a minute, {status['failing']} failing, slowest "
              f"{status['slowest']['milliseconds']} ms\nin {given.watch} s: memory {after[1] / before[1]:.3f} times, "
              f"descriptors {after[2] / before[2]:.3f} times")
        fleet("remove")
        if given.bare:
            print_stand(fleet, given.bare, timed(lambda: fleet("up", str(given.bare))), alone)
    finally:
        fleet("remove")
        acs.terminate()


if __name__ == "__main__":
    main()
