import csv
import io

from device_process import DeviceTest, get, put

TUESDAY_NOON = bytes((17, 11, 0xEA, 7, 0, 0, 12, 0))


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

    def test_deleting_restarts_the_counters(self):
        device = self.start("--clock-stands")
        ftp, other = self.client(device, "part3"), self.client(device, "part4")
        elsewhere = get(other, "allstats.csv")
        before = tables(get(ftp, "allstats.csv"))
        ftp.delete("linestat")
        _, lines, nodes, hours = tables(get(ftp, "allstats.csv"))
        self.assertEqual((sum(numbers(lines["Total"])), int(hours["09:00"][0])), (0, 0))
        self.assertEqual(nodes, before[2])
        ftp.delete("nodestat")
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

    def test_the_binary_counters_restart_too(self):
        ftp = self.client(self.start("--clock-stands"), "part3")
        for name, record, first_counter in (("linestat", 28, 4), ("nodestat", 12, 8)):
            def counted():
                data = get(ftp, name)
                return [any(data[i + first_counter:i + record]) for i in range(0, len(data), record)]
            self.assertTrue(any(counted()))
            ftp.delete(name)
            self.assertFalse(any(counted()))

    def test_a_download_is_as_long_as_it_was_measured(self):
        device = self.start()
        ftp = self.client(device, "part3")
        ftp.delete("linestat")
        ftp.voidcmd("TYPE I")
        size = ftp.size("allstats.csv")
        put(self.client(device), "time", TUESDAY_NOON)
        self.assertEqual(len(get(ftp, "allstats.csv")), size)
        self.assertGreater(len(get(ftp, "allstats.csv")), size)
