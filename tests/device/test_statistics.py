import csv
import io

from device_process import DeviceTest, get, outcome


def tables(data):
    """The tables of lines, nodes and hours by their first column."""
    parts = [[]]
    for row in csv.reader(io.StringIO(data.decode("ascii"), newline="")):
        parts.append([]) if not row else parts[-1].append(row)
    parts[0] = [row for row in parts[0] if len(row) > 2]
    return ({row[0]: row[1:] for row in table} for table in parts)


class Statistics(DeviceTest):
    def test_deleting_restarts_the_counters(self):
        device = self.start()
        ftp, other = self.client(device, "part3"), self.client(device, "part4")
        elsewhere = get(other, "allstats.csv")
        ftp.delete("linestat")
        lines, nodes, hours = tables(get(ftp, "allstats.csv"))
        self.assertEqual((set(lines["Total"]), hours["09:00"][0]), ({"0"}, "0"))
        self.assertTrue(any(int(row[1]) for row in list(nodes.values())[1:]))
        ftp.delete("nodestat")
        _, nodes, _ = tables(get(ftp, "allstats.csv"))
        self.assertFalse(any(int(row[1]) for row in list(nodes.values())[1:]))
        self.assertEqual(get(other, "allstats.csv"), elsewhere)

    def test_old_firmware_has_no_table(self):
        for firmware, expected in (("5.CB", "550"), ("5.02", "ok")):
            ftp = self.client(self.start("--firmware", firmware), "part3")
            self.assertEqual(outcome(lambda: get(ftp, "allstats.csv")), expected)
