module ostrel.example/go-host

go 1.19
