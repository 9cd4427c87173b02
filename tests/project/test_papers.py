"""What is installed beside the programs: the desktop's own checkers have nothing to say of it, it
agrees with the programs, and the shells complete with it.

usage: test_papers.py BUILD_FOLDER
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv[1])
ROOT = pathlib.Path(__file__).resolve().parents[2]
ID = "io.github.lumirra.Lumirra"


def run(*command, **more):
    return subprocess.run(list(map(str, command)), text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=120, **more)


class Papers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name)
        cls.share = cls.prefix / "share"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", cls.prefix],
                       check=True, stdout=subprocess.DEVNULL)
        cls.desktop = cls.share / f"applications/{ID}.desktop"

    def test_the_checkers_have_nothing_to_say(self):
        for command in (["desktop-file-validate", self.desktop],
                        ["appstreamcli", "validate", "--no-net",
                         self.share / f"metainfo/{ID}.metainfo.xml"]):
            checked = run(*command)
            self.assertEqual(checked.returncode, 0, checked.stdout)
            self.assertNotRegex(checked.stdout, r"(?m)^[EWI]:|warning|hint")
        pages = sorted((self.share / "man/man1").iterdir())
        self.assertEqual([page.name for page in pages], ["lumirra-cli.1", "lumirra.1"])
        for page in pages:
            read = subprocess.run(["man", "--warnings", "-l", "-Tutf8", "-Z", page],
                                  env={"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8",
                                       "MANWIDTH": "80"}, capture_output=True, text=True)
            self.assertEqual((read.returncode, read.stderr), (0, ""), page)

    def test_names_agree(self):
        self.assertIn(f'"{ID}"', (ROOT / "src/app/main.cpp").read_text())
        entry = self.desktop.read_text()
        options = run(self.prefix / "bin/lumirra", "--help", env={"PATH": ""}).stdout
        for words in re.findall(r"(?m)^Exec=lumirra(?: (--\S+))?", entry):
            self.assertIn(words, options)
        theme = self.share / "icons/hicolor"
        for name in (re.search(r"(?m)^Icon=(\S+)", entry)[1], "application-x-lumirra-profile"):
            self.assertEqual(len(list(theme.rglob(f"{name}.svg"))), 1)
            for size in (16, 22, 24, 32, 48, 64, 128, 256, 512):
                [picture] = (theme / f"{size}x{size}").rglob(f"{name}.png")
                header = picture.read_bytes()[16:24]
                self.assertEqual(header, size.to_bytes(4, "big") * 2, picture)
        self.assertTrue((theme / f"symbolic/apps/{ID}-symbolic.svg").exists())

    def test_profiles_have_a_type(self):
        mime = self.share / "mime"
        done = run("update-mime-database", mime, env={"XDG_DATA_DIRS": str(self.share),
                                                      "PATH": os.environ["PATH"]})
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        self.assertIn("application/x-lumirra-profile:*.lmr", (mime / "globs").read_text())

    def complete_in_bash(self, line):
        script = self.share / "bash-completion/completions/lumirra-cli"
        # as the shell itself cuts a line: "=" is a word of its own
        words = re.findall(r"=|[^\s=]+", line) + ([""] if line.endswith(" ") else [])
        # compopt speaks of a completion that is going on
        asked = 'compopt() { :; }; source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))' \
                '; _lumirra_cli; printf "%s\\n" "${COMPREPLY[@]}"'
        return run("bash", "-c", asked, "bash", script, *words, cwd=self.prefix).stdout.split("\n")

    def complete_in_fish(self, line):
        script = self.share / "fish/vendor_completions.d/lumirra-cli.fish"
        done = run("fish", "--no-config", "-c", f"source {script}; complete -C '{line}'",
                   cwd=self.prefix, env={"PATH": os.environ["PATH"], "HOME": str(self.prefix)})
        return [row.split("\t")[0] for row in done.stdout.split("\n")]

    def complete_in_zsh(self, line):
        script = self.share / "zsh/vendor-completions"
        # a terminal of its own. A key typed before the line editor has the terminal is lost, so the
        # editor says when it begins; the halves keep the echo of the command from saying it. Without
        # a line speed the list is drawn at once, whatever was typed since
        typed = f"""zmodload zsh/zpty; zpty z "PS1= TERM=dumb zsh -f -i"
            zpty -w z 'fpath=({script} $fpath); autoload -U compinit; compinit -u -D'
            zpty -w z "zstyle ':completion:*' list-separator '  '; setopt no_beep; LISTMAX=999"
            zpty -w z "BAUD=0; bindkey '^G' list-choices"
            zpty -w z "begin() {{ print EDITOR''-BEGINS; }}; zle -N zle-line-init begin"
            zpty -r z out '*EDITOR-BEGINS*'; zpty -w -n z $'{line}\\x07'
            zpty -w z $'\\x15 print LISTE''D'; zpty -r z out '*LISTED*'; print -r -- $out"""
        done = run("zsh", "-f", "-c", typed, cwd=self.prefix)
        return re.split(r"\s{2,}|\r?\n|\r", re.sub(r"\x1b\S*", "", done.stdout))

    def test_shells_complete_words(self):
        (self.prefix / "frames here").mkdir(exist_ok=True)
        (self.prefix / "old.lmr").touch()
        cases = (("lumirra-cli --fit c", {"center", "crop"}),
                 ("lumirra-cli --keep", {"--keep-frames"}),
                 ("lumirra-cli --set sliderHu", {"sliderHue="}),
                 ("lumirra-cli -p ol", {"old.lmr"}))
        for line, expected in cases:
            self.assertLessEqual(expected, set(self.complete_in_bash(line)), line)
            self.assertLessEqual(expected, set(self.complete_in_fish(line)), line)
        self.assertEqual(self.complete_in_bash("lumirra-cli --set comboTextPosition=Bot")[:2],
                         ["Bottom\\ Left", "Bottom\\ Right"])
        self.assertIn("comboTextPosition=Center",
                      self.complete_in_fish("lumirra-cli --set comboTextPosition="))
        self.assertLessEqual({"center", "crop"}, set(self.complete_in_zsh("lumirra-cli --fit c")))
        self.assertIn("Center", self.complete_in_zsh("lumirra-cli --set comboTextPosition="))


if __name__ == "__main__":
    sys.exit(unittest.main(argv=sys.argv[:1]))
