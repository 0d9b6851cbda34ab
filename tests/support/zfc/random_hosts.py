"""Host files of every kind of adapter, state and oddity, each made from its number alone."""

import random

import yaml

FAMILIES = ["aster", "birch", "cedar", "ginkgo", "elm", "fern", "hazel", "iris", "dahlia"]
SPEEDS = [1, 2, 4, 8, 10, 16, 32, 64]
# Calls of reports that a fault makes fail, and results that programs know or do not.
CALLS = [
    "TORPI_IsRebootRequired",
    "TORPI_GetFlashComponentVersion",
    "TORPI_GetAdapterFlashMemoBlock",
    "TORPI_GetPersonalityType",
    "TORPI_GetAdapterAsicBoardTemperature",
    "TORPI_GetLockdownStatus",
    "TORPI_GetVpd",
    "TORPI_GetSFPDataEx",
    "TORPI_GetHBAParamsInfo",
    "TORPI_FCGetBBCSupportInfoEx",
    "TORPI_FCGetFECSupportInfo",
    "TORPI_GetFWPrivateStats",
    "TORPI_IsMezzAdapter",
    "TORPI_GetBootDeviceInfo",
    "TORPI_GetNVMeBootDeviceEntries",
    "TORPI_GetAdapterBeaconStatus",
    "TORPI_GetNVMeHostNQNStatus",
    "TORPI_IsVCLMFeatureEnabled",
    "TORPI_GetSCMRStatisticsList",
    "TORPI_FreeSCMRStatisticsList",
    "TORPI_GetSCMRProfile",
    "TORPI_GetPortStatisticsFC",
    "TORPI_GetTargetLinkSpeed",
]
RESULTS = [1, 2, 40, 113, 118, 121, 150, 4000000000]
TEXTS = ["", "ZX\"5<&>'", "5", "a b", "Zo\u00eb", "x" * 32, "%s%n", "it's # not: a comment", "UPPER_lower_1"]
TARGET_COUNTERS = ["link-failure", "loss-of-sync", "invalid-crc", "delivery-timeout", "link-device-specific-event"]
PORT_COUNTERS = ["congestion-alarms", "throttled-down", "bottomed-out", "invalid-crc", "pun", "returned-busy"]


class _Maker:
    def __init__(self, number):
        self.random = random.Random(number)
        self.names = 0

    def maybe(self, chance, make):
        return make() if self.random.random() < chance else None

    def number(self, bits):
        """Of any size up to these bits, the ends included."""
        return self.random.choice([0, 1, 2**bits - 1, self.random.getrandbits(bits), self.random.getrandbits(bits // 2)])

    def octets(self, count):
        return ":".join(f"{self.random.getrandbits(8):02x}" for _ in range(count))

    def name(self, kind="21"):
        self.names += 1
        return f"{kind}:{self.random.getrandbits(8):02x}:00:0e:1e:{self.octets(2)}:{self.names:02x}"

    def text(self, limit):
        text = self.random.choice(TEXTS)
        while len(text.encode()) > limit:
            text = text[:-1]
        return text

    def some(self, values):
        return self.random.sample(values, self.random.randint(0, len(values)))

    def map(self, chance, **makers):
        """Each key with this chance."""
        made = {key.replace("_", "-"): self.maybe(chance, make) for key, make in makers.items()}
        return {key: value for key, value in made.items() if value is not None}

    def host(self):
        pick = self.random.choice
        host = self.map(
            0.3,
            reboot_required=lambda: pick([True, False]),
            faults=lambda: [{"call": call, "result": pick(RESULTS)} for call in self.random.sample(CALLS, 3)],
        )
        host["adapters"] = [self.adapter() for _ in range(self.random.randint(0, 3))]
        return host

    def adapter(self):
        pick = self.random.choice
        adapter = {"family": pick(FAMILIES)}
        adapter |= self.map(
            0.2,
            model=lambda: self.text(32),
            serial=lambda: self.text(32),
            manufacturer=lambda: self.text(80),
            type=lambda: self.number(32),
            device_id=lambda: pick([0x3150, 0x3740, 0x7932, 0x3B40, 0x3E48, self.number(16)]),
            subsystem_device_id=lambda: self.number(16),
            bus=lambda: self.number(16),
            chip_revision=lambda: self.number(32),
            versions=lambda: self.map(
                0.4, firmware=lambda: self.text(32), bios=lambda: "3.62", driver=lambda: self.text(52)
            ),
            flash=lambda: {"mpi-firmware": pick(["none", "255.255.255", "1.2.3"])},
            memo_block=lambda: pick(["none", {"signature": "FMBS", "tool-id": "VIPL"}, {"signature": "nope"}]),
            personality=lambda: pick(["fc", "cna", 7]),
            personality_change_allowed=lambda: pick([True, False]),
            firmware_lockdown=lambda: True,
            mezzanine=lambda: True,
        )
        if self.random.random() < 0.9:
            adapter["ports"] = [self.port() for _ in range(self.random.randint(0, 2))]
        return adapter

    def port(self):
        pick = self.random.choice
        port = self.entry()
        port |= self.map(
            0.25,
            number=lambda: self.number(32),
            no_protocols=lambda: self.maybe(0.2, lambda: True),
            sfp=self.module,
            npiv=lambda: [self.entry() for _ in range(self.random.randint(1, 2))],
        )
        return port | self.map(0.05, protocol=lambda: pick(["fc", "fcoe", 2, 77]))

    def entry(self):
        pick = self.random.choice
        return {"wwpn": self.name()} | self.map(
            0.25,
            wwnn=lambda: self.name("20"),
            port_id=lambda: self.octets(3),
            link=lambda: pick(["up", "down", 3, 9]),
            speed=lambda: pick(SPEEDS),
            type=lambda: pick(["physical", "npiv", 9]),
            port_type=lambda: self.number(8),
            connection=lambda: pick(["point-to-point", "loop", 9]),
            supported_speeds=lambda: self.some(SPEEDS),
            error_correction=lambda: True,
            principal_fabric=lambda: self.octets(8),
            host_nqn=lambda: self.text(256),
            host_id=lambda: self.octets(16),
            running_firmware=lambda: self.text(32),
            capabilities=lambda: self.number(32),
            driver_flags=lambda: self.number(8),
            maintenance=lambda: self.maybe(0.5, lambda: True),
            rom=lambda: self.some(["bios", "uefi"]),
            driver_counters=lambda: [self.number(32) for _ in range(6)],
            firmware_counters=lambda: [self.number(32) for _ in range(6)],
            temperature=lambda: pick([-32768, -1, 0, 51, 32767]),
            lockdown=lambda: {"config": pick(["on", "unsupported-driver", 5]), "mpi": "unsupported-firmware"},
            vpd=lambda: pick(["none", {"bytes": self.octets(40)}, {"items": {"V7": "LAB", "EC": "none"}}]),
            rdp=lambda: pick(["none", {"bytes": self.octets(60)}, {"link-errors": [1, 2, 3, 4, 5, 6]}]),
            targets=self.targets,
            configuration=self.configuration,
            congestion=self.congestion,
            diagnostics=lambda: {"diagnostic-port": True, "nqn-registered": pick([True, False])},
        )

    def module(self):
        pick = self.random.choice
        return pick(
            [
                "none",
                {"form": "qsfp", "vendor": "LUMEN", "serial": "Q1234567"},
                {"vendor": self.text(16), "measured": {"temperature": 71.5}, "after-refresh": {"temperature": -3}},
                {"diagnostics": False},
                {"calibration": {"temperature": {"slope": 1.5, "offset": -7}}},
            ]
        )

    def targets(self):
        items = [self.target() for _ in range(self.random.randint(1, 3))]
        return items + ([{"count": 12, "luns": "0-3"}] if self.random.random() < 0.1 else [])

    def target(self):
        pick = self.random.choice
        nvme = self.random.random() < 0.4
        target = {"type": "nvme" if nvme else "fcp", "wwpn": self.name("50")}
        target["namespaces" if nvme else "luns"] = self.luns()
        return target | self.map(
            0.25,
            wwnn=lambda: self.name("50"),
            number=lambda: self.number(16),
            vendor=lambda: self.text(8),
            product=lambda: self.text(16),
            revision=lambda: self.text(4),
            serial=lambda: self.text(64),
            product_type=lambda: pick(["tape", "raid", 99]),
            nqn=lambda: self.text(256),
            state=lambda: pick(["offline", "unconfigured"]),
            remote_record=lambda: pick(["current", "older", "none"]),
            remote_type=lambda: pick(["initiator", "initiator-target", "unknown"]),
            session=lambda: pick(["pending", "complete", 99]),
            secure=lambda: True,
            link_speed=lambda: pick(SPEEDS),
            link_speed_code=lambda: self.number(32),
            lun_count=lambda: self.number(32),
            congestion=lambda: {"state": "congested", "virtual-lane": "slow", "notifications": self.number(16)},
            statistics=lambda: {key: self.number(32) for key in self.some(TARGET_COUNTERS)},
        )

    def luns(self):
        pick = self.random.choice
        sized = {"number": 30, "size": self.number(32)}
        luns = [pick(["0-5", 7, 65535, {"number": "20-22", "unique-id": self.octets(12)}, sized])]
        return luns if self.random.random() < 0.8 else []

    def configuration(self):
        pick = self.random.choice

        def drives():
            return [{"wwpn": self.octets(8), "lun": self.number(16)} for _ in range(self.random.randint(1, 8))]

        return self.map(
            0.5,
            parameters=lambda: {"data-rate": pick([8, 16, "auto", 99]), "frame-size": self.number(16), "vclm": True},
            boot=lambda: {"enabled": True, "selective-login": pick([True, False]), "drives": drives()},
            nvme_boot=lambda: pick(["none", [{"enabled": True, "wwpn": self.octets(8), "nqn": self.text(256)}]]),
            credit_recovery=lambda: {"count": self.number(8), "state": "offline", "reason": self.text(64)},
            fec=lambda: {"enabled": pick([True, False]), "correctable-errors": self.number(32)},
            beacon=lambda: pick(["on", "off", 5]),
        )

    def congestion(self):
        pick = self.random.choice
        return self.map(
            0.4,
            enabled=lambda: pick([True, False]),
            state=lambda: pick(["healthy", "congested", 9]),
            severity=lambda: pick(["warning", "alarm", 9]),
            notifications=lambda: self.number(16),
            link_event=lambda: pick(["loss-of-sync", 99]),
            alarms=lambda: self.number(64),
            fabric_connection=lambda: pick([["cisco"], ["brocade"], 255]),
            virtual_lane=lambda: pick(["non-operational", 9]),
            profile=lambda: {"configured": pick([True, False]), "management": pick(["nvram", 9]), "activation": 3},
            statistics=lambda: {
                "port-element": pick(["first", "second", "absent"]),
                "port": {key: self.number(64) for key in self.some(PORT_COUNTERS)},
                "departed-targets": pick([0, 1, 3]),
            },
        )


def random_host(number):
    """The text of a host file. The same number gives the same text."""
    return yaml.safe_dump(_Maker(number).host(), sort_keys=False, allow_unicode=True)
