// ostrel-go-example: ostrel.dll's C interface from Go, the same steps and output as
// ostrel-c-example. Checks the DLL's version, connects to the camera server, loads a factory
// calibration into preset 0 and the same calibration at twice the integration time into preset 1,
// converts a synthetic frame through each kind of conversion, asks the scalar and range functions,
// shows what a failed call says and, given a number of seconds, waits that long for a
// notification.
//
//	GOOS=windows GOARCH=amd64 CGO_ENABLED=0 go build -o ostrel-go-example.exe .
//	ostrel-go-example FACTORY_CAL OBJECT_PARAMS [SECONDS]
//
// ostrel.dll is found on the DLL search path (beside the program, the current folder), or where
// OSTREL_DLL names it.
//
// Threads and COM: the library enters a single-threaded apartment on the first thread it is used
// from, and notifications arrive through that thread's message loop. The Go scheduler moves
// goroutines between OS threads, so a Go host locks one goroutine to its thread
// (runtime.LockOSThread in init keeps main on the process's main thread), makes every library
// call from that goroutine, pumps the thread's messages (PeekMessageW/DispatchMessageW) for as
// long as it wants notifications, and never puts the thread in the multithreaded apartment
// (calls from there answer OSTREL_WRONG_THREAD). Callbacks made with syscall.NewCallback then run
// inside DispatchMessageW, on that goroutine.
package main

import (
	"fmt"
	"os"
	"runtime"
	"syscall"
	"unsafe"
)

func init() {
	runtime.LockOSThread()
}

const program = "ostrel-go-example"

const (
	width  = 64
	height = 48
	pixels = width * height
)

func fail() int {
	fmt.Fprintf(os.Stderr, "%s: %s\n", program, lastError())
	return 1
}

// One line per conversion: the first and last pixel, the mean and how many are valid.
func summarise(what string, temps []float64, statusBytes []uint8) {
	sum := 0.0
	valid := 0
	for k := 0; k < pixels; k++ {
		sum += temps[k]
		if statusBytes[k] == lutValid {
			valid++
		}
	}
	fmt.Printf("%s: %d pixels from %s to %s, mean %s, %d valid\n", what, pixels,
		cFixed(temps[0], 2), cFixed(temps[pixels-1], 2), cFixed(sum/pixels, 4), valid)
}

// Preset 0 from the file, preset 1 the same at twice the integration time; both active.
func loadPresets(e engine, factoryCalPath, objectParamsPath string) int {
	var record factoryCal
	active := [4]uint8{1, 1, 0, 0}
	if engineLoadFactoryCal(e, 0, factoryCalPath) != statusOK ||
		engineLoadObjectParams(e, objectParamsPath) != statusOK ||
		engineGetFactoryCal(e, 0, &record) != statusOK {
		return fail()
	}
	record.integrationTime *= 2
	if engineSetFactoryCal(e, 1, &record) != statusOK ||
		engineSetActivePresets(e, &active) != statusOK {
		return fail()
	}
	return 0
}

func convert(e engine) int {
	counts := make([]uint16, pixels)
	floats := make([]float32, pixels)
	temps := make([]float64, pixels)
	statusBytes := make([]uint8, pixels)
	presetMap := make([]uint8, pixels)
	keys := make([]uint32, pixels)
	keyToPreset := []uint8{0, 1, 1, 0}
	var record factoryCal
	if engineGetFactoryCal(e, 0, &record) != statusOK {
		return fail()
	}
	for k := 0; k < pixels; k++ {
		counts[k] = uint16(record.countsLow + uint32(k)*(record.countsHigh-record.countsLow)/pixels)
		presetMap[k] = uint8(k % 2)
		keys[k] = uint32(k / width % 4)
	}
	if convertUniform(e, 0, unsafe.Pointer(&counts[0]), typeUint16, unsafe.Pointer(&floats[0]),
		typeFloat, pixels, statusBytes, unitCelsius) != statusOK {
		return fail()
	}
	for k := range floats {
		temps[k] = float64(floats[k])
	}
	summarise("Uniform, preset 0, Celsius", temps, statusBytes)
	if convertMapped(e, presetMap, unsafe.Pointer(&counts[0]), typeUint16,
		unsafe.Pointer(&temps[0]), typeDouble, pixels, statusBytes, unitKelvin) != statusOK {
		return fail()
	}
	summarise("Mapped, presets 0 and 1 by column, kelvin", temps, statusBytes)
	if convertKeyed(e, keys, keyToPreset, unsafe.Pointer(&counts[0]), typeUint16,
		unsafe.Pointer(&floats[0]), typeFloat, pixels, statusBytes, unitFahrenheit) != statusOK {
		return fail()
	}
	for k := range floats {
		temps[k] = float64(floats[k])
	}
	summarise("Keyed, presets 0 1 1 0 by row, Fahrenheit", temps, statusBytes)
	return 0
}

func ask(e engine) int {
	var temp, low, high float32
	var statusByte uint8
	var counts uint16
	var shortest, longest uint32
	if countsToTemp(e, 0, 20000, &temp, &statusByte, unitCelsius) != statusOK {
		return fail()
	}
	fmt.Printf("Count 20000 through preset 0: %s C, status %d\n", cFixed(float64(temp), 2),
		statusByte)
	if tempToCounts(e, 0, 50.0, unitCelsius, &counts) != statusOK {
		return fail()
	}
	fmt.Printf("50.00 C through preset 0: count %d\n", counts)
	if integrationTimeRange(e, 0, &shortest, &longest) != statusOK {
		return fail()
	}
	fmt.Printf("Preset 0 integration times: %d to %d us\n", shortest, longest)
	if tempRange(e, 0, longest, &low, &high) != statusOK {
		return fail()
	}
	fmt.Printf("At %d us preset 0 covers %s C to %s C\n", longest, cFixed(float64(low), 2),
		cFixed(float64(high), 2))
	if engineLoadFactoryCal(e, 2, "missing.txt") != statusOK {
		fmt.Printf("A failed call says why: %s\n", lastError())
	}
	return 0
}

// The library keeps the context, and Go memory may not be handed to C to keep, so the context is
// a key to the variable that receives the value.
var receivers = map[uintptr]*uint64{}

var onNotification = syscall.NewCallback(func(context uintptr, value uint64) uintptr {
	if received := receivers[context]; received != nil {
		*received = value
	}
	return 0
})

var (
	user32                        = syscall.NewLazyDLL("user32.dll")
	kernel32                      = syscall.NewLazyDLL("kernel32.dll")
	procMsgWaitForMultipleObjects = user32.NewProc("MsgWaitForMultipleObjects")
	procPeekMessageW              = user32.NewProc("PeekMessageW")
	procTranslateMessage          = user32.NewProc("TranslateMessage")
	procDispatchMessageW          = user32.NewProc("DispatchMessageW")
	procGetTickCount              = kernel32.NewProc("GetTickCount")
)

const (
	qsAllInput = 0x04ff
	pmRemove   = 0x0001
)

type message struct {
	hwnd     uintptr
	message  uint32
	wParam   uintptr
	lParam   uintptr
	time     uint32
	pt       struct{ x, y int32 }
	lPrivate uint32
}

func getTickCount() uint32 {
	r, _, _ := procGetTickCount.Call()
	return uint32(r)
}

// Notifications arrive on this thread, from its message loop.
func awaitNotification(seconds uint32) int {
	var token subscription
	var received uint64
	const context = 1
	receivers[context] = &received
	defer delete(receivers, context)
	if attachMessageThread() != statusOK ||
		subscribe(onNotification, context, &token) != statusOK {
		return fail()
	}
	msg := new(message)
	start := getTickCount()
	for waited := uint32(0); received == 0 && waited < seconds*1000; waited = getTickCount() - start {
		procMsgWaitForMultipleObjects.Call(0, 0, 0, uintptr(seconds*1000-waited), qsAllInput)
		for {
			r, _, _ := procPeekMessageW.Call(uintptr(unsafe.Pointer(msg)), 0, 0, 0, pmRemove)
			if int32(r) == 0 {
				break
			}
			procTranslateMessage.Call(uintptr(unsafe.Pointer(msg)))
			procDispatchMessageW.Call(uintptr(unsafe.Pointer(msg)))
		}
	}
	unsubscribe(token)
	detachMessageThread()
	if received == 0 {
		fmt.Printf("No notification within %d s\n", seconds)
		return 1
	}
	fmt.Printf("Notification: %d\n", received)
	return 0
}

// parseSeconds reads text as C's strtoul(text, NULL, 10) does for a 32-bit unsigned long:
// leading white space, a sign, the digits up to the first other character; a negative number
// wraps around, and one out of range gives the largest value.
func parseSeconds(text string) uint32 {
	k := 0
	for k < len(text) && (text[k] == ' ' || (text[k] >= '\t' && text[k] <= '\r')) {
		k++
	}
	negative := false
	if k < len(text) && (text[k] == '+' || text[k] == '-') {
		negative = text[k] == '-'
		k++
	}
	var value uint64
	for ; k < len(text) && text[k] >= '0' && text[k] <= '9'; k++ {
		value = value*10 + uint64(text[k]-'0')
		if value > 0xffffffff {
			return 0xffffffff
		}
	}
	if negative {
		return uint32(-value)
	}
	return uint32(value)
}

func run(args []string) int {
	if len(args) < 3 || len(args) > 4 {
		fmt.Fprintf(os.Stderr, "%s: usage: %s FACTORY_CAL OBJECT_PARAMS [SECONDS]\n", program,
			program)
		return 1
	}
	if err := loadOstrel(); err != nil {
		fmt.Fprintf(os.Stderr, "%s: %v\n", program, err)
		return 1
	}
	version := ostrelVersion()
	if version/1000000 != headerVersionMajor || version < headerVersionNumber {
		fmt.Fprintf(os.Stderr, "%s: ostrel.dll %d does not serve headers %d.%d.%d\n", program,
			version, headerVersionNumber/1000000, headerVersionNumber/1000%1000,
			headerVersionNumber%1000)
		return 1
	}
	fmt.Printf("ostrel.dll %d.%d.%d\n", version/1000000, version/1000%1000, version%1000)
	var major, minor, build uint32
	if serverVersion(&major, &minor, &build) != statusOK {
		return fail()
	}
	fmt.Printf("Connected to camera server %d.%d.%d.\n", major, minor, build)
	var e engine
	if engineCreate(&e) != statusOK {
		return fail()
	}
	exitCode := loadPresets(e, args[1], args[2])
	if exitCode == 0 {
		exitCode = convert(e)
	}
	if exitCode == 0 {
		exitCode = ask(e)
	}
	engineDestroy(e)
	if exitCode == 0 && len(args) == 4 {
		exitCode = awaitNotification(parseSeconds(args[3]))
	}
	return exitCode
}

func main() {
	os.Exit(run(os.Args))
}
