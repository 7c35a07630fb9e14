import csv
import io
from datetime import datetime

from device_process import DeviceTest, get, outcome, put
from formats_reader import sections

from device.formats import time_file

TUESDAY_NOON = time_file(datetime(2026, 11, 17, 12))


def tables(data):
    """The caption as a dictionary, then the tables of lines, nodes and hours by their first column."""
    text = data.decode("ascii")
    assert text.count("\n") == text.count("\r\n")
    sections = [[]]
    for row in csv.reader(io.StringIO(text, newline="")):
        sections.append([]) if not row else sections[-1].append(row)
    top, nodes, hours = sections
    caption = dict(row for row in top if len(row) == 2)
    lines = [row for row in top if len(row) > 2]
    return caption, *({row[0]: row[1:] for row in table} for table in (lines, nodes, hours))


def numbers(row):
    return [int(cell) for cell in row]


class Statistics(DeviceTest):
    def test_same_seed_same_table(self):
        def fetch(partition, *options):
            return get(self.client(self.start("--clock-stands", *options), partition), "allstats.csv")
        first = fetch("part3", "--seed", "7")
        self.assertEqual(fetch("part3", "--seed", "7"), first)
        self.assertNotEqual(fetch("part3", "--seed", "8"), first)
        self.assertNotEqual(fetch("part4", "--seed", "7").replace(b"Partition,4", b"Partition,3"), first)

    def test_the_table_adds_up(self):
        device = self.start("--firmware", "6.61")
        for partition in ("part1", "part33", "part64"):
            with self.subTest(partition=partition):
                caption, lines, nodes, hours = tables(get(self.client(device, partition), "allstats.csv"))
                self.assertEqual((caption["Firmware"], "part" + caption["Partition"]), ("6.61", partition))
                self.assertEqual(lines.pop("Line")[0], "Calls")
                total = numbers(lines.pop("Total"))
                rows = [numbers(row) for row in lines.values()]
                self.assertEqual([sum(column) for column in zip(*rows)][:-1], total[:-1])
                self.assertEqual(max(row[-1] for row in rows), total[-1])
                for calls, answered, busy, no_answer, transfers, seconds, longest in rows:
                    self.assertEqual(answered + busy + no_answer, calls)
                    self.assertTrue(0 <= transfers <= answered and longest <= seconds)
                hourly = [int(row[0]) for row in list(hours.values())[1:]]
                self.assertEqual((len(hourly), sum(hourly)), (24, total[0]))
                self.assertGreater(total[0], 50)
                self.assertTrue(all(0 <= int(row[1]) <= total[1] for row in list(nodes.values())[1:]))

    def counted(self, ftp, name, counters):
        return any(any(record[counters:]) for record in sections(get(ftp, name))[2])

    def test_deleting_restarts_the_counters(self):
        device = self.start("--clock-stands")
        ftp, other = self.client(device, "part3"), self.client(device, "part4")
        elsewhere = get(other, "allstats.csv")
        before = tables(get(ftp, "allstats.csv"))
        self.assertTrue(self.counted(ftp, "linestat", 1) and self.counted(ftp, "nodestat", 2))
        ftp.delete("linestat")
        _, lines, nodes, hours = tables(get(ftp, "allstats.csv"))
        self.assertEqual((sum(numbers(lines["Total"])), int(hours["09:00"][0])), (0, 0))
        self.assertEqual(nodes, before[2])
        ftp.delete("nodestat")
        self.assertFalse(self.counted(ftp, "linestat", 1) or self.counted(ftp, "nodestat", 2))
        caption, _, nodes, _ = tables(get(ftp, "allstats.csv"))
        self.assertFalse(any(int(row[1]) for row in list(nodes.values())[1:]))
        self.assertEqual(caption["Lines counted since"], "2026-11-16 12:10:05")
        self.assertEqual(caption["Nodes counted since"], "2026-11-16 12:10:05")
        self.assertEqual(get(other, "allstats.csv"), elsewhere)

        put(self.client(device), "time", TUESDAY_NOON)
        _, lines, nodes, hours = tables(get(ftp, "allstats.csv"))
        self.assertTrue(0 < int(lines["Total"][0]) < int(before[1]["Total"][0]))
        self.assertGreater(int(nodes["MSG1"][1]), 0)
        self.assertLess(int(hours["12:00"][0]), int(before[3]["12:00"][0]))

    def test_the_binary_counters_are_those_of_the_table(self):
        ftp = self.client(self.start("--clock-stands"), "part3")
        _, lines, nodes, _ = tables(get(ftp, "allstats.csv"))
        calls, transfers, active = (sections(get(ftp, "linestat"))[tag] for tag in (2, 3, 4))
        for record, (line, transferred) in zip(calls, transfers):
            number, total, answered, busy, no_answer, seconds, longest = record
            self.assertEqual((number, numbers(lines[str(number)])),
                             (line, [total, answered, busy, no_answer, transferred, seconds, longest]))
        in_use = sum(count * seconds for count, _, seconds in active)
        self.assertTrue(0 < in_use <= sum(record[5] for record in calls))

        accesses, made, counts, details = (sections(get(ftp, "nodestat"))[tag] for tag in (2, 3, 4, 5))
        self.assertEqual([record[2] for record in accesses], [int(row[1]) for row in list(nodes.values())[1:]])
        visits = {record[:2]: record[2] for record in accesses}
        for kind, number, chosen, _, timed_out, aborted in made:
            self.assertEqual(chosen + timed_out + aborted, visits[kind, number])
            self.assertEqual(chosen, sum(record[-1] for record in counts if record[:2] == (kind, number)))
            self.assertEqual(chosen, sum(sum(record[-2:]) for record in details if record[:2] == (kind, number)))

    def test_old_firmware_has_no_table(self):
        for firmware, expected in (("5.01", "550"), ("5.CB", "550"), ("5.02", "ok"), ("6.61", "ok")):
            ftp = self.client(self.start("--firmware", firmware), "part3")
            self.assertEqual(outcome(lambda: get(ftp, "allstats.csv")), expected)
            self.assertEqual("allstats.csv" in ftp.nlst(), expected == "ok")
            self.assertEqual(outcome(lambda: [get(ftp, name) for name in ("linestat", "nodestat", "dbase")]), "ok")

    def test_counters_grow_from_one_command_to_the_next(self):
        ftp = self.client(self.start("--clock-stands", "--command-takes", "86400"), "part3")
        ftp.delete("linestat")
        ftp.voidcmd("TYPE I")
        self.assertLess(ftp.size("allstats.csv"), len(get(ftp, "allstats.csv")))
