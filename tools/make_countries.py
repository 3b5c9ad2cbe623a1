#!/usr/bin/python3
"""Makes src/resources/countries.db: dialling codes, mobile country codes and mobile-number patterns by country.

Everything comes from Debian packages (python3-phonenumbers, iso-codes, libicu72 for CLDR's names) and from
mobile_country_codes.txt beside this file; mobile-broadband-provider-info serves as a check. docs/countries.md says
what is taken from where. The same packages give the same bytes.
"""

import ctypes
import ctypes.util
import json
import pathlib
import re
import sqlite3
import sys
import xml.etree.ElementTree as ElementTree

import phonenumbers

TOOLS = pathlib.Path(__file__).resolve().parent
TARGET = TOOLS.parent / "src" / "resources" / "res" / "countries.db"
ISO_CODES = pathlib.Path("/usr/share/iso-codes/json/iso_3166-1.json")
PROVIDERS = pathlib.Path("/usr/share/mobile-broadband-provider-info/serviceproviders.xml")

# Numbers that a regulator keeps free for films and examples are in no phone metadata, but they are what samples
# and manuals show. Ofcom: 07700 900000 to 900999.
EXAMPLE_NUMBERS = {"GB": r"7700900\d{3}"}

# Italian landlines keep their zero abroad. A nine-digit mobile number (a few old ones are left) behind a zero
# cannot be told from a landline of area 032x to 039x, so nine digits are left out.
MOBILE_LENGTHS = {"IT": (10,), "VA": (10,)}

SCHEMA = """
create table countries(sn CHAR(2) primary key, ln TEXT, pnum TEXT, mmc TEXT, numc TEXT, u2 TEXT, r1 TEXT, r2 TEXT,
    r3 TEXT, r4 TEXT, mnc_rx TEXT, n TEXT);
create index index_countries_pnum on countries(pnum);
create table mmc_sn(mmc CHAR(3) primary key, sn CHAR(2));
create index index_mmc_sn on mmc_sn(sn);
"""


def country_codes():
    """ISO codes of the countries that the phone metadata knows."""
    iso = {entry["alpha_2"] for entry in json.loads(ISO_CODES.read_text("utf-8"))["3166-1"]}
    return sorted(iso & set(phonenumbers.SUPPORTED_REGIONS))


def mobile_country_codes():
    """Pairs (code, countries), the country that the code is looked up as first."""
    lines = (TOOLS / "mobile_country_codes.txt").read_text("ascii").splitlines()
    rows = [line.split() for line in lines if line and not line.startswith("#")]
    return [(row[0], row[1:]) for row in rows]


class Icu:
    """CLDR's names and likely languages, out of the ICU library."""

    def __init__(self):
        library = ctypes.util.find_library("icuuc")
        version = library.rsplit(".", 1)[1]
        self._likely = getattr(ctypes.CDLL(library), f"uloc_addLikelySubtags_{version}")
        self._country = getattr(ctypes.CDLL(library), f"uloc_getDisplayCountry_{version}")

    def likely_locale(self, code):
        """The most used language of a country as a locale, "de_Latn_AT"."""
        text, status = ctypes.create_string_buffer(100), ctypes.c_int(0)
        self._likely(f"und_{code}".encode(), text, len(text), ctypes.byref(status))
        assert status.value <= 0, code
        return text.value.decode()

    def name(self, code, language):
        text, status = (ctypes.c_uint16 * 200)(), ctypes.c_int(0)
        length = self._country(f"und_{code}".encode(), language.encode(), text, len(text), ctypes.byref(status))
        assert status.value <= 0, code
        return bytes(text)[: 2 * length].decode(f"utf-16-{sys.byteorder[0]}e")


def mobile_pattern(code, metadata):
    """Without anchors; grouped, because its readers put "^" before it and "$" behind it."""
    choices = [metadata.mobile.national_number_pattern or ""] if metadata.mobile else [""]
    choices += [EXAMPLE_NUMBERS[code]] if code in EXAMPLE_NUMBERS else []
    pattern = "|".join(choice for choice in choices if choice)
    return f"(?:{pattern})" if "|" in pattern else pattern


def trunk_prefixes(metadata):
    """Usually one. A country in the middle of a change has both, as a class such as [08]."""
    prefix, parsing = metadata.national_prefix or "", metadata.national_prefix_for_parsing or ""
    if parsing.startswith("[") and parsing.endswith("]") and parsing[1:-1].isdigit():
        return ",".join(parsing[1:-1])
    return prefix


def country_row(code, icu, mmc):
    metadata = phonenumbers.PhoneMetadata.metadata_for_region(code)
    lengths = MOBILE_LENGTHS.get(code) or metadata.mobile.possible_length
    formats = metadata.number_format
    return (
        code,
        icu.name(code, icu.likely_locale(code)),
        str(metadata.country_code),
        ",".join(mmc),
        ",".join(str(length) for length in lengths),
        trunk_prefixes(metadata),
        mobile_pattern(code, metadata),
        ";".join(entry.pattern for entry in formats),
        ";".join(entry.format.replace("\\", "$") for entry in formats),
        ";".join("#".join(entry.leading_digits_pattern) for entry in formats),
        metadata.international_prefix or "",
        icu.name(code, "en"),
    )


def check_example(row):
    """The metadata's own example of a mobile number has to pass the row's length and pattern."""
    code, lengths, pattern = row[0], row[4].split(","), row[6]
    number = phonenumbers.PhoneMetadata.metadata_for_region(code).mobile.example_number
    if number and (str(len(number)) not in lengths or not re.fullmatch(pattern, number)):
        sys.exit(f"{code}: the example {number} does not fit {row[4]} and {pattern}")


def disagreements(codes, mobile_codes):
    """What the provider information says otherwise about codes that both know."""
    ours = {mmc: set(countries) for mmc, countries in mobile_codes}
    for country in ElementTree.parse(PROVIDERS).getroot().iter("country"):
        code = country.get("code").upper()
        for network in country.iter("network-id"):
            if code in codes and code not in ours.get(network.get("mcc"), set()):
                yield f"{network.get('mcc')} {code}"


def write(rows, mobile_codes):
    TARGET.unlink(missing_ok=True)
    database = sqlite3.connect(TARGET)
    database.executescript("pragma page_size=4096; pragma journal_mode=off;" + SCHEMA)
    database.executemany("insert into countries values(?,?,?,?,?,?,?,?,?,?,?,?)", rows)
    database.executemany("insert into mmc_sn values(?,?)", [(mmc, owners[0]) for mmc, owners in mobile_codes])
    database.commit()
    database.execute("vacuum")
    database.close()


def main():
    codes = country_codes()
    mobile_codes = mobile_country_codes()
    strangers = {owner for _, owners in mobile_codes for owner in owners} - set(codes)
    if strangers:
        sys.exit(f"mobile_country_codes.txt names countries without a row: {sorted(strangers)}")
    for line in sorted(set(disagreements(set(codes), mobile_codes))):
        print("provider information differs:", line, file=sys.stderr)
    icu = Icu()
    mmc = {code: [number for number, owners in mobile_codes if code in owners] for code in codes}
    rows = [country_row(code, icu, mmc[code]) for code in codes]
    for row in rows:
        check_example(row)
    write(rows, mobile_codes)
    print(f"{len(codes)} countries, {len(mobile_codes)} mobile country codes in {TARGET}")


if __name__ == "__main__":
    main()
