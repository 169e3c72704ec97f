# Completion of hushmode for fish. Made by packaging/generate from the program's own commands; do not edit.

# Prints the command that is being typed, and how many arguments it has before the cursor.
function __hushmode_where
    set -l command hushmode
    set -l places 0
    set -l option ''
    set -l only_places ''
    for word in (commandline -opc)[2..]
        if test -n "$option"
            set option ''
        else if test -z "$only_places" -a "$word" = --
            set only_places 1
        else if test -z "$only_places"; and string match -qr -- '^-.' $word
            if contains -- "$command $word" $__hushmode_with_value
                set option $word
            end
        else if contains -- "$command $word" $__hushmode_commands
            set command "$command $word"
        else
            set places (math $places + 1)
        end
    end
    echo $command
    echo $places
end

# Whether that command is typed; with a number, whether that argument is next; with "+", whether any is.
function __hushmode_at
    set -l where (__hushmode_where)
    test "$where[1]" = "$argv[1]"; or return 1
    test -z "$argv[2]" -o "$argv[2]" = +; or test (math $where[2] + 1) -eq $argv[2]
end

function __hushmode_names
    hushmode complete $argv[1] 2>/dev/null
end

# Each entry behind what a list with commas has already, but for those that are in it.
function __hushmode_list
    # What is typed, without its quotation marks.
    set -l typed (commandline -ct | string replace -r -- '^(--[^=]*=)?["\']?' '' | string replace -ra '\\\\(.)' '$1')
    set -l begin (string match -r -- '^.*, *' $typed)
    set -l given (string split , -- $typed | string trim)
    for entry in $argv
        if not contains -- $entry $given[1..-2]
            echo -- "$begin$entry"
        end
    end
end

complete -c hushmode -f
set -g __hushmode_commands 'hushmode profile' 'hushmode profile list' 'hushmode profile show' 'hushmode profile add' 'hushmode profile edit' 'hushmode profile remove' 'hushmode profile enable' 'hushmode profile disable' 'hushmode profile copy' 'hushmode export' 'hushmode import' 'hushmode on' 'hushmode off' 'hushmode status' 'hushmode log' 'hushmode calendars' 'hushmode networks' 'hushmode quiet' 'hushmode schedule' 'hushmode rescue' 'hushmode agenda' 'hushmode explain' 'hushmode doctor' 'hushmode simulate' 'hushmode events' 'hushmode help'
set -g __hushmode_with_value 'hushmode profile add --window' 'hushmode profile add --calendars' 'hushmode profile add --networks' 'hushmode profile add --enabled' 'hushmode profile add --ringtone' 'hushmode profile add --media' 'hushmode profile add --vibrate' 'hushmode profile add --do-not-disturb' 'hushmode profile add --icon' 'hushmode profile add --play-tone' 'hushmode profile add --tone' 'hushmode profile add --light' 'hushmode profile add --events' 'hushmode profile add --all-day-events' 'hushmode profile edit --window' 'hushmode profile edit --calendars' 'hushmode profile edit --networks' 'hushmode profile edit --enabled' 'hushmode profile edit --ringtone' 'hushmode profile edit --media' 'hushmode profile edit --vibrate' 'hushmode profile edit --do-not-disturb' 'hushmode profile edit --icon' 'hushmode profile edit --play-tone' 'hushmode profile edit --tone' 'hushmode profile edit --light' 'hushmode profile edit --events' 'hushmode profile edit --all-day-events' 'hushmode profile edit --title' 'hushmode export --format' 'hushmode log --limit' 'hushmode quiet --profile' 'hushmode schedule --days' 'hushmode agenda --days' 'hushmode agenda --from' 'hushmode agenda --svg' 'hushmode explain --at' 'hushmode simulate --profiles' 'hushmode simulate --calendars' 'hushmode simulate --from' 'hushmode simulate --to' 'hushmode simulate --zone' 'hushmode events --calendars' 'hushmode events --from' 'hushmode events --to' 'hushmode events --zone'

complete -c hushmode -n '__hushmode_at "hushmode"' -a profile -d 'List, show, add, change and remove profiles'
complete -c hushmode -n '__hushmode_at "hushmode"' -a export -d 'Write profiles to a file'
complete -c hushmode -n '__hushmode_at "hushmode"' -a import -d 'Take over profiles from a file'
complete -c hushmode -n '__hushmode_at "hushmode"' -a on -d 'Switch Hush Mode on'
complete -c hushmode -n '__hushmode_at "hushmode"' -a off -d 'Switch Hush Mode off; what is quiet comes back at once'
complete -c hushmode -n '__hushmode_at "hushmode"' -a status -d 'What is quiet now, for what, until when; what comes next; what does not work'
complete -c hushmode -n '__hushmode_at "hushmode"' -a log -d 'The recent switches, with their reasons'
complete -c hushmode -n '__hushmode_at "hushmode"' -a calendars -d 'The calendars that profiles can follow'
complete -c hushmode -n '__hushmode_at "hushmode"' -a networks -d 'The WiFi networks that the phone knows'
complete -c hushmode -n '__hushmode_at "hushmode"' -a quiet -d 'Quiet from now on, for a while'
complete -c hushmode -n '__hushmode_at "hushmode"' -a schedule -d 'Quiet hours without a calendar, over midnight too'
complete -c hushmode -n '__hushmode_at "hushmode"' -a rescue -d 'Put back what is still quiet because the daemon died, without the daemon'
complete -c hushmode -n '__hushmode_at "hushmode"' -a agenda -d 'Every switch to come, by your own profiles and calendars'
complete -c hushmode -n '__hushmode_at "hushmode"' -a explain -d 'Why a profile is on or off, now or at another time'
complete -c hushmode -n '__hushmode_at "hushmode"' -a doctor -d 'What does not work on this phone or in your profiles, and how to mend it'
complete -c hushmode -n '__hushmode_at "hushmode"' -a simulate -d 'Play profiles and calendars on a phone in memory and show every switch'
complete -c hushmode -n '__hushmode_at "hushmode"' -a events -d 'List the events in a folder of calendars, repeats included'
complete -c hushmode -n '__hushmode_at "hushmode"' -a help -d 'What a command does, and how it is called'
complete -c hushmode -n '__hushmode_at "hushmode"' -l version -d 'Print the version'
complete -c hushmode -n '__hushmode_at "hushmode"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode profile"' -a list -d 'List the profiles'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -a show -d 'Show all settings of a profile'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -a add -d 'Add a profile'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -a edit -d 'Change settings of a profile'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -a remove -d 'Remove a profile'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -a enable -d 'Let a profile take part again'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -a disable -d 'Let a profile rest'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -a copy -d 'Copy a profile under another title'
complete -c hushmode -n '__hushmode_at "hushmode profile"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode profile list"' -l json -d 'Print one JSON object a line'
complete -c hushmode -n '__hushmode_at "hushmode profile list"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode profile show"' -l json -d 'Print a JSON object'
complete -c hushmode -n '__hushmode_at "hushmode profile show"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode profile show" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l all-day -d 'The window is the whole day'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l window -x  -d 'The daily window, such as 08:00-17:00 or 8am-5pm'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l calendars -x -a '(__hushmode_list (__hushmode_names calendars))' -d 'Calendars whose events switch it on, with commas between'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l networks -x -a '(__hushmode_list (__hushmode_names networks) none)' -d 'WiFi networks that switch it on, or none'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l enabled -x -a 'on off' -d 'Whether the profile takes part'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l ringtone -x  -d 'The ringtone volume while it is on, such as 5%'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l media -x  -d 'The media volume while it is on'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l vibrate -x -a 'on off' -d 'Whether the phone vibrates while it is on'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l do-not-disturb -x -a 'on off' -d 'Whether it switches Do Not Disturb on'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l icon -x -a 'on off' -d 'Whether it shows an icon'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l play-tone -x -a 'on off' -d 'Whether a tone sounds at each switch'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l tone -x -a '(__hushmode_names tones)' -d 'Which tone, such as "texttone:Calendar Alert"'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l light -x -a 'on off' -d 'Whether the screen lights up at each switch'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l events -x -a 'any confirmed tentative' -d 'Which events count: any, confirmed or tentative'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -l all-day-events -x -a 'count ignore' -d 'Whether events that last all day count: count or ignore'
complete -c hushmode -n '__hushmode_at "hushmode profile add"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l all-day -d 'The window is the whole day'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l window -x  -d 'The daily window, such as 08:00-17:00 or 8am-5pm'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l calendars -x -a '(__hushmode_list (__hushmode_names calendars))' -d 'Calendars whose events switch it on, with commas between'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l networks -x -a '(__hushmode_list (__hushmode_names networks) none)' -d 'WiFi networks that switch it on, or none'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l enabled -x -a 'on off' -d 'Whether the profile takes part'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l ringtone -x  -d 'The ringtone volume while it is on, such as 5%'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l media -x  -d 'The media volume while it is on'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l vibrate -x -a 'on off' -d 'Whether the phone vibrates while it is on'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l do-not-disturb -x -a 'on off' -d 'Whether it switches Do Not Disturb on'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l icon -x -a 'on off' -d 'Whether it shows an icon'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l play-tone -x -a 'on off' -d 'Whether a tone sounds at each switch'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l tone -x -a '(__hushmode_names tones)' -d 'Which tone, such as "texttone:Calendar Alert"'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l light -x -a 'on off' -d 'Whether the screen lights up at each switch'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l events -x -a 'any confirmed tentative' -d 'Which events count: any, confirmed or tentative'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l all-day-events -x -a 'count ignore' -d 'Whether events that last all day count: count or ignore'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l title -x  -d 'Its new title'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -l editor -d 'Open it as text in $EDITOR'
complete -c hushmode -n '__hushmode_at "hushmode profile edit"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode profile edit" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode profile remove"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode profile remove" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode profile enable"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode profile enable" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode profile disable"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode profile disable" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode profile copy"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode profile copy" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode export"' -l format -x -a 'xml binary' -d 'xml, or the shorter binary'
complete -c hushmode -n '__hushmode_at "hushmode export"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode export" 1' -F -d 'FILE'
complete -c hushmode -n '__hushmode_at "hushmode export" +' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode import"' -l dry-run -d 'Only show what would change'
complete -c hushmode -n '__hushmode_at "hushmode import"' -l replace -d 'Remove the profiles that the file does not have'
complete -c hushmode -n '__hushmode_at "hushmode import"' -l json -d 'Print one JSON object a line'
complete -c hushmode -n '__hushmode_at "hushmode import"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode import" 1' -F -d 'FILE'

complete -c hushmode -n '__hushmode_at "hushmode on"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode off"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode status"' -l json -d 'Print JSON'
complete -c hushmode -n '__hushmode_at "hushmode status"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode log"' -l json -d 'Print JSON'
complete -c hushmode -n '__hushmode_at "hushmode log"' -l limit -x  -d 'How many at most; 0 for all that are kept'
complete -c hushmode -n '__hushmode_at "hushmode log"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode calendars"' -l json -d 'Print JSON'
complete -c hushmode -n '__hushmode_at "hushmode calendars"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode networks"' -l json -d 'Print JSON'
complete -c hushmode -n '__hushmode_at "hushmode networks"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode quiet"' -l profile -x -a '(__hushmode_names profiles)' -d 'By which profile'
complete -c hushmode -n '__hushmode_at "hushmode quiet"' -l end -d 'End such a time now, of all profiles or of the one named'
complete -c hushmode -n '__hushmode_at "hushmode quiet"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode schedule"' -l days -x -a '(__hushmode_list mon tue wed thu fri sat sun)' -d 'On which days they begin, such as mon,tue; without: every day'
complete -c hushmode -n '__hushmode_at "hushmode schedule"' -l list -d 'List the quiet hours'
complete -c hushmode -n '__hushmode_at "hushmode schedule"' -l remove -d 'Remove those of the profile'
complete -c hushmode -n '__hushmode_at "hushmode schedule"' -l json -d 'List as JSON objects'
complete -c hushmode -n '__hushmode_at "hushmode schedule"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode schedule" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode rescue"' -l dry-run -d 'Only show what would be put back'
complete -c hushmode -n '__hushmode_at "hushmode rescue"' -l json -d 'Print one JSON object a line'
complete -c hushmode -n '__hushmode_at "hushmode rescue"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode agenda"' -l days -x  -d 'How many days, today included'
complete -c hushmode -n '__hushmode_at "hushmode agenda"' -l from -x  -d 'The first day, such as 2026-11-24, instead of today from now on'
complete -c hushmode -n '__hushmode_at "hushmode agenda"' -l json -d 'Print one JSON object a line'
complete -c hushmode -n '__hushmode_at "hushmode agenda"' -l picture -d 'Draw the days in the terminal'
complete -c hushmode -n '__hushmode_at "hushmode agenda"' -l svg -rF -d 'Draw the days into this SVG file; - for standard output'
complete -c hushmode -n '__hushmode_at "hushmode agenda"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode explain"' -l at -x  -d 'When, such as 14:20, 2:20pm or "2026-11-24 14:20"; without: now'
complete -c hushmode -n '__hushmode_at "hushmode explain"' -l verbose -d 'Also what was decided on that day until then, line by line'
complete -c hushmode -n '__hushmode_at "hushmode explain"' -l json -d 'Print a JSON object'
complete -c hushmode -n '__hushmode_at "hushmode explain"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode explain" 1' -a '(__hushmode_names profiles)' -d 'NAME'

complete -c hushmode -n '__hushmode_at "hushmode doctor"' -l json -d 'Print one JSON object a line'
complete -c hushmode -n '__hushmode_at "hushmode doctor"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode simulate"' -l profiles -rF -d 'The profiles, a property-list file'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -l calendars -x -a '(__fish_complete_directories)' -d 'A folder of iCalendar files'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -l from -x  -d 'When to begin (without a scenario: today at midnight)'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -l to -x  -d 'When to end; a day means its end (without: the end of the first day)'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -l zone -x -a '(__hushmode_names zones)' -d 'The phone\'s time zone, such as Europe/Berlin'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -s v -l verbose -d 'Show the decisions, too'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -l host -l no-host -d 'With the host\'s guards, as on a real phone (the default), or the bare library'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -l json -d 'Print the whole record as JSON lines'
complete -c hushmode -n '__hushmode_at "hushmode simulate"' -s h -l help -d 'Print this help'
complete -c hushmode -n '__hushmode_at "hushmode simulate" 1' -F -d 'SCENARIO'

complete -c hushmode -n '__hushmode_at "hushmode events"' -l calendars -x -a '(__fish_complete_directories)' -d 'A folder of iCalendar files'
complete -c hushmode -n '__hushmode_at "hushmode events"' -l from -x  -d 'When to begin'
complete -c hushmode -n '__hushmode_at "hushmode events"' -l to -x  -d 'When to end; a day means its end'
complete -c hushmode -n '__hushmode_at "hushmode events"' -l zone -x -a '(__hushmode_names zones)' -d 'The local time zone, such as Europe/Berlin'
complete -c hushmode -n '__hushmode_at "hushmode events"' -l json -d 'Print one JSON object a line'
complete -c hushmode -n '__hushmode_at "hushmode events"' -s h -l help -d 'Print this help'

complete -c hushmode -n '__hushmode_at "hushmode help"' -l json -d 'Print a JSON object, with all commands in it'
complete -c hushmode -n '__hushmode_at "hushmode help"' -s h -l help -d 'Print this help'
